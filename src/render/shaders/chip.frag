#version 440
// SPDX-License-Identifier: GPL-3.0-or-later
layout(location = 0) in vec2 uv;
layout(location = 0) out vec4 color;

layout(std140, binding = 0) uniform Record {
    vec4 rect;
    vec4 meta;
} u;
layout(binding = 1) uniform sampler2D raster;

// The raster is premultiplied, so all of it fades alike.
void main() {
    color = textureLod(raster, uv, 0.0) * u.meta.z;
}
