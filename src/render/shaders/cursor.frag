#version 440
// SPDX-License-Identifier: GPL-3.0-or-later
#extension GL_GOOGLE_include_directive : require
#include "rounded_box.glsl"

layout(location = 0) in vec2 uv;
layout(location = 1) in vec2 px;
layout(location = 0) out vec4 color;

layout(std140, binding = 0) uniform Record {
    vec4 rect;
    vec4 meta;
    vec4 content;
} u;
layout(binding = 1) uniform sampler2D image;

void main() {
    if (outsideContent(px, u.meta, u.content)) discard;
    vec4 c = textureLod(image, uv, 0.0);
    // The image is premultiplied, the blending is not.
    vec3 straight = c.a > 0.0 ? c.rgb / c.a : c.rgb;
    color = vec4(straight, c.a * clamp(u.meta.w, 0.0, 1.0));
}
