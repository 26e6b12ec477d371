// SPDX-License-Identifier: GPL-3.0-or-later
// Fills a region of size res with the middle of a texture, cutting what is too long.
vec2 coverUV(vec2 uv, vec2 textureSize, vec2 res) {
    float textureAspect = textureSize.x / textureSize.y;
    float regionAspect = res.x / res.y;
    vec2 shown = regionAspect > textureAspect ? vec2(1.0, textureAspect / regionAspect)
                                              : vec2(regionAspect / textureAspect, 1.0);
    return 0.5 + (uv - 0.5) * shown;
}
