// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

/// The inner loops over 8-bit pixels, compiled for several instruction sets and chosen at run time. Weights
/// are 15-bit fractions (32768 would be 1): result = a + (b - a) * weight, rounded to nearest. Spans may have
/// any alignment; nothing outside them is read or written.
namespace tessaloom::PixelKernels {

constexpr int weightBits = 15;
constexpr std::int16_t largestWeight = 32767;

/// Mixes two rows of bytes with one weight.
void mixRows(const std::uint8_t* a, const std::uint8_t* b, std::int16_t weight, std::uint8_t* out,
             std::size_t bytes);

/// out[i] = mix of the source pixels columns[i] and columns[i] + 1 by weights[4 * i] (each weight stands four
/// times, once per channel).
void resampleRow(const std::uint8_t* source, const std::int32_t* columns, const std::int16_t* weights,
                 std::uint8_t* out, std::size_t pixels);

/// Lays a premultiplied row, all of it scaled by `opacity` (0 to 256), over an opaque one; within a level.
void blendOver(const std::uint8_t* source, std::uint16_t opacity, std::uint8_t* target, std::size_t pixels);

/// Mixes one pixel, four bytes, into a row with one weight.
void mixColor(const std::uint8_t* pixel, std::int16_t weight, std::uint8_t* target, std::size_t pixels);

/// Mixes two rows of pixels: `b` where the red of `matte` is 255, `a` where it is 0.
void mixByMatte(const std::uint8_t* a, const std::uint8_t* b, const std::uint8_t* matte, std::uint8_t* out,
                std::size_t pixels);

/// sums[i] += bytes[i].
void addRow(const std::uint8_t* bytes, std::uint16_t* sums, std::size_t count);

/// out[i] = a fifth of sums[i], rounded; sums are at most 5 * 255.
void fifthOfRow(const std::uint16_t* sums, std::uint8_t* out, std::size_t count);

/// out[i] = the sum of rows[tap][i] * weights[tap] / 65536 over all taps, within taps / 2 of exact. The
/// weights add up to 65536 or a little less; values are at most 255 * 256.
void weightedSum(const std::uint16_t* const* rows, const std::uint16_t* weights, std::size_t taps,
                 std::uint16_t* out, std::size_t count);

/// The same over 256, rounded.
void weightedSumToBytes(const std::uint16_t* const* rows, const std::uint16_t* weights, std::size_t taps,
                        std::uint8_t* out, std::size_t count);

}  // namespace tessaloom::PixelKernels
