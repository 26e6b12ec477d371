#version 440
// SPDX-License-Identifier: GPL-3.0-or-later
#extension GL_GOOGLE_include_directive : require
#include "rounded_box.glsl"
#include "steps.glsl"

layout(location = 1) in vec2 px;
layout(location = 0) out vec4 color;

layout(std140, binding = 0) uniform Record {
    vec4 rect;
    vec4 color;
    vec4 meta;
} u;

void main() {
    float radius = min(u.meta.z, min(u.rect.z, u.rect.w) * 0.5);
    float fill = coverage(boxDistance(px, u.rect, radius));
    color = vec4(u.color.rgb, u.color.a * fill * u.meta.w);
}
