// SPDX-License-Identifier: GPL-3.0-or-later
// Corners of a triangle strip: (0,0), (1,0), (0,1), (1,1).
vec2 quadCorner() {
    return vec2(gl_VertexIndex & 1, gl_VertexIndex >> 1);
}

// The first row of a picture in memory is at clip y = -1 on every graphics interface.
vec4 canvasToClip(vec2 px, vec2 canvas) {
    return vec4(px / canvas * 2.0 - 1.0, 0.0, 1.0);
}
