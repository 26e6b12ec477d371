#version 440
// SPDX-License-Identifier: GPL-3.0-or-later
layout(location = 0) in vec2 uv;
layout(location = 0) out vec4 color;

layout(std140, binding = 0) uniform Record {
    vec4 shown; // what of the texture fills the target: origin and size, as fractions
} u;
layout(binding = 1) uniform sampler2D picture;

void main() {
    color = textureLod(picture, u.shown.xy + uv * u.shown.zw, 0.0);
}
