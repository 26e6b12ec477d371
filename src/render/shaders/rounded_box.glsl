// SPDX-License-Identifier: GPL-3.0-or-later
// Signed distance from a box whose corners are p-norm curves with p = 4, negative inside.
float roundedBoxSDF(vec2 q, float corner) {
    vec2 m = max(q, 0.0);
    vec2 squared = m * m;
    float outside = sqrt(sqrt(dot(squared, squared)));
    return outside + min(max(q.x, q.y), 0.0) - corner;
}

float boxDistance(vec2 px, vec4 rect, float corner) {
    vec2 halfSize = rect.zw * 0.5;
    return roundedBoxSDF(abs(px - (rect.xy + halfSize)) - (halfSize - corner), corner);
}

// Overlays end hard at the outline of the framed recording.
bool outsideContent(vec2 px, vec4 meta, vec4 content) {
    return boxDistance(px, content, meta.z) > 0.0;
}
