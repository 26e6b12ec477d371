#version 440
// SPDX-License-Identifier: GPL-3.0-or-later
#extension GL_GOOGLE_include_directive : require
#include "cover_fit.glsl"
#include "rounded_box.glsl"
#include "steps.glsl"

layout(location = 0) in vec2 px;
layout(location = 0) out vec4 color;

layout(std140, binding = 0) uniform Record {
    vec4 rect;
    vec4 params;
    vec4 meta;
    vec4 border;
    vec4 blur;
} u;
layout(binding = 1) uniform sampler2D camera;
layout(binding = 2) uniform sampler2D matte;
layout(binding = 3) uniform sampler2D blurred;

float shapeDistance() {
    vec2 halfSize = u.rect.zw * 0.5;
    float shortHalf = min(halfSize.x, halfSize.y);
    float shape = u.params.x;
    if (shape < 0.5) return length(px - (u.rect.xy + halfSize)) - shortHalf;
    return boxDistance(px, u.rect, shape < 1.5 ? shortHalf : u.params.y);
}

vec3 cameraColor() {
    vec2 local = (px - u.rect.xy) / u.rect.zw;
    vec2 at = coverUV(local, vec2(textureSize(camera, 0)), u.rect.zw);
    if (u.params.z > 0.5) at.x = 1.0 - at.x;
    vec3 sharp = textureLod(camera, at, 0.0).rgb;
    // Without blur the other two slots hold stand-ins.
    if (u.blur.x <= 0.001) return sharp;
    return mix(textureLod(blurred, at, 0.0).rgb, sharp, textureLod(matte, at, 0.0).r);
}

float borderRing(float dist) {
    float width = u.border.w;
    if (width <= 0.5) return 0.0;
    return hermiteStep(-width - 1.0, -width, dist) * (1.0 - hermiteStep(-1.0, 0.0, dist));
}

void main() {
    float dist = shapeDistance();
    float fill = coverage(dist);
    vec3 picture = mix(cameraColor(), u.border.rgb, borderRing(dist));
    float shadow = (1.0 - fill) * (1.0 - hermiteStep(0.0, u.params.w, dist)) * u.meta.w;
    // The shadow is black, so it only adds alpha.
    float alpha = fill + shadow * (1.0 - fill);
    color = vec4(picture * fill / max(alpha, 0.0001), alpha * clamp(u.meta.z, 0.0, 1.0));
}
