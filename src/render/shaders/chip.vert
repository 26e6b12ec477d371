#version 440
// SPDX-License-Identifier: GPL-3.0-or-later
#extension GL_GOOGLE_include_directive : require
#include "quad.glsl"

layout(location = 0) out vec2 uv;
layout(location = 1) out vec2 px;

layout(std140, binding = 0) uniform Record {
    vec4 rect;
    vec4 meta;
} u;

void main() {
    uv = quadCorner();
    px = u.rect.xy + uv * u.rect.zw;
    gl_Position = canvasToClip(px, u.meta.xy);
}
