#version 440
// SPDX-License-Identifier: GPL-3.0-or-later
layout(location = 0) in vec2 uv;
layout(location = 0) out vec4 color;

layout(std140, binding = 0) uniform Record {
    vec2 canvas;  // texels of this pass's target
    float factor; // source texels, on each axis, that one target texel is the mean of
    float padding; // source texels by which the target reaches beyond the source on each side
} u;
layout(binding = 1) uniform sampler2D picture;

// Each sample between four texels is their mean; beyond the edge the sampler repeats it.
void main() {
    vec2 size = vec2(textureSize(picture, 0));
    vec2 start = floor(uv * u.canvas) * u.factor - u.padding;
    float spacing = min(u.factor, 2.0);
    int taps = int(u.factor / spacing);
    vec4 sum = vec4(0.0);
    for (int y = 0; y < taps; ++y) {
        for (int x = 0; x < taps; ++x)
            sum += textureLod(picture, (start + (vec2(x, y) + 0.5) * spacing) / size, 0.0);
    }
    color = sum / float(taps * taps);
}
