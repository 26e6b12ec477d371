#version 440
// SPDX-License-Identifier: GPL-3.0-or-later
#extension GL_GOOGLE_include_directive : require
#include "cover_fit.glsl"
#include "rounded_box.glsl"
#include "steps.glsl"

layout(location = 0) in vec2 uv;
layout(location = 0) out vec4 color;

layout(std140, binding = 0) uniform Record {
    vec4 a;
    vec4 b;
    vec4 c;
    vec4 bgTop;
    vec4 bgBottom;
    vec4 d;
} u;
layout(binding = 1) uniform sampler2D recording;
layout(binding = 2) uniform sampler2D wallpaper;

// The mean of 5 by 5 samples, or a single one without a radius.
vec4 blurredSample(sampler2D picture, vec2 at, float radius) {
    vec2 size = vec2(textureSize(picture, 0));
    vec2 tap = vec2(radius * 0.5, radius * 0.5 * size.x / size.y);
    int reach = radius > 0.0001 ? 2 : 0;
    vec4 sum = vec4(0.0);
    for (int dy = -reach; dy <= reach; ++dy) {
        for (int dx = -reach; dx <= reach; ++dx)
            sum += textureLod(picture, at + vec2(dx, dy) * tap, 0.0);
    }
    return sum / float((2 * reach + 1) * (2 * reach + 1));
}

vec4 background(vec2 res) {
    float style = u.c.w;
    float blur = u.d.y;
    if (style > 2.5)
        return blurredSample(recording, coverUV(uv, vec2(textureSize(recording, 0)), res), 0.012 + blur * 0.03);
    if (style > 1.5)
        return blurredSample(wallpaper, coverUV(uv, vec2(textureSize(wallpaper, 0)), res), blur * 0.03);
    if (style > 0.5) return mix(u.bgTop, u.bgBottom, uv.y);
    return u.bgTop;
}

float shadowMask(vec2 px, vec4 content, float corner) {
    float feather = max(8.0, min(content.z, content.w) * 0.06);
    vec4 caster = content + vec4(0.0, content.w * 0.02, 0.0, 0.0);
    return 1.0 - hermiteStep(0.0, feather, boxDistance(px, caster, corner));
}

// Content without size is a line or a point. Whoever looks along it from beyond its end sees the recording's
// end there, and from on it the start, within what rounding may do to a pixel's place.
float along(float distance, float size) {
    if (size > 0.0) return distance / size;
    return distance > 0.001 ? 1e9 : -1e9;
}

vec4 framedRecording(vec2 px, vec4 content) {
    vec2 local = vec2(along(px.x - content.x, content.z), along(px.y - content.y, content.w));
    return textureLod(recording, clamp(u.b.zw + local * u.c.xy, 0.0, 1.0), 0.0);
}

void main() {
    vec2 res = u.a.xy;
    vec2 px = uv * res;
    vec4 content = vec4(u.a.zw, u.b.xy);
    float corner = u.c.z;
    float dist = boxDistance(px, content, corner);
    color = vec4(0.0);
    // Under the inside of the recording nothing of the background shows, so it isn't worked out.
    if (dist > -1.0) {
        color = background(res);
        float strength = u.d.x;
        if (strength > 0.001) color.rgb *= 1.0 - strength * 0.55 * shadowMask(px, content, corner);
    }
    if (dist <= 1.0) color = mix(color, framedRecording(px, content), coverage(dist));
}
