#version 440
// SPDX-License-Identifier: GPL-3.0-or-later
#extension GL_GOOGLE_include_directive : require
#include "quad.glsl"

layout(location = 0) out vec2 px;

layout(std140, binding = 0) uniform Record {
    vec4 rect;
    vec4 params;
    vec4 meta;
    vec4 border;
    vec4 blur;
} u;

// Grown by the margin that holds the shadow.
void main() {
    float margin = u.params.w;
    px = u.rect.xy - margin + quadCorner() * (u.rect.zw + 2.0 * margin);
    gl_Position = canvasToClip(px, u.meta.xy);
}
