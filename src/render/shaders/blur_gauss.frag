#version 440
// SPDX-License-Identifier: GPL-3.0-or-later
layout(location = 0) in vec2 uv;
layout(location = 0) out vec4 color;

layout(std140, binding = 0) uniform Record {
    vec2 tap;     // from one tap to the next, as a fraction of the texture
    float sigma;  // in taps
    float radius; // in taps
} u;
layout(binding = 1) uniform sampler2D picture;

// One axis of a Gaussian.
void main() {
    int radius = int(u.radius);
    float fall = -0.5 / (u.sigma * u.sigma);
    vec4 sum = vec4(0.0);
    float weights = 0.0;
    for (int i = -radius; i <= radius; ++i) {
        float weight = exp(float(i * i) * fall);
        sum += textureLod(picture, uv + float(i) * u.tap, 0.0) * weight;
        weights += weight;
    }
    color = sum / weights;
}
