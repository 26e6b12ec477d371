#version 440
// SPDX-License-Identifier: GPL-3.0-or-later
#extension GL_GOOGLE_include_directive : require
#include "rounded_box.glsl"
#include "steps.glsl"

layout(location = 0) in vec2 uv;
layout(location = 1) in vec2 px;
layout(location = 0) out vec4 color;

layout(std140, binding = 0) uniform Record {
    vec4 rect;
    vec4 params;
    vec4 color;
    vec4 meta;
    vec4 content;
} u;

// Of the quad's half width.
const float ringThickness = 0.16;

void main() {
    if (outsideContent(px, u.meta, u.content)) discard;
    float age = u.params.x;
    float d = length(uv - 0.5) * 2.0;
    float ring = hermiteStep(age - ringThickness, age, d) - hermiteStep(age, age + ringThickness, d);
    color = vec4(u.color.rgb, ring * (1.0 - age) * u.color.a);
}
