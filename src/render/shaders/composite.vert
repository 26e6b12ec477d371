#version 440
// SPDX-License-Identifier: GPL-3.0-or-later
layout(location = 0) out vec2 uv;

// One triangle that covers the whole target.
void main() {
    vec2 position = vec2((gl_VertexIndex << 1) & 2, gl_VertexIndex & 2) * 2.0 - 1.0;
    uv = position * 0.5 + 0.5;
    gl_Position = vec4(position, 0.0, 1.0);
}
