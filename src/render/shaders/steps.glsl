// SPDX-License-Identifier: GPL-3.0-or-later
// The cubic Hermite step; falls along x when from > to, which the built-in one leaves undefined.
float hermiteStep(float from, float to, float x) {
    float t = clamp((x - from) / (to - from), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

// How much of a pixel at this distance from an outline is inside of it.
float coverage(float dist) {
    return hermiteStep(1.0, -1.0, dist);
}
