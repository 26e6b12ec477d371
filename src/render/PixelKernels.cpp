// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/PixelKernels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/PixelKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaloom::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

static_assert(std::endian::native == std::endian::little);

using Words = hn::ScalableTag<std::int16_t>;
using Bytes = hn::Rebind<std::uint8_t, Words>;
using Sums = hn::Rebind<std::uint16_t, Words>;
using Texels = hn::ScalableTag<std::uint32_t>;

// The rounding of MulFixedPoint15, for what is left over behind the last whole vector.
std::uint8_t mixByte(int a, int b, int weight) {
    return static_cast<std::uint8_t>(a + (((b - a) * weight + 16384) >> PixelKernels::weightBits));
}

template <class Weight>
void mixVector(const std::uint8_t* a, const std::uint8_t* b, Weight weight, std::uint8_t* out) {
    const Words words;
    const Bytes bytes;
    const auto from = hn::PromoteTo(words, hn::LoadU(bytes, a));
    const auto to = hn::PromoteTo(words, hn::LoadU(bytes, b));
    const auto mixed = hn::Add(from, hn::MulFixedPoint15(hn::Sub(to, from), weight));
    hn::StoreU(hn::DemoteTo(bytes, mixed), bytes, out);
}

void mixRows(const std::uint8_t* a, const std::uint8_t* b, std::int16_t weight, std::uint8_t* out,
             std::size_t count) {
    const Words words;
    const std::size_t step = hn::Lanes(words);
    const auto weights = hn::Set(words, weight);
    std::size_t i = 0;
    for (; i + step <= count; i += step)
        mixVector(a + i, b + i, weights, out + i);
    for (; i < count; ++i)
        out[i] = mixByte(a[i], b[i], weight);
}

void mixPixels(const std::uint8_t* a, const std::uint8_t* b, const std::int16_t* weights, std::uint8_t* out,
               std::size_t count) {
    const Words words;
    const std::size_t step = hn::Lanes(words);
    std::size_t i = 0;
    for (; i + step <= count; i += step)
        mixVector(a + i, b + i, hn::LoadU(words, weights + i), out + i);
    for (; i < count; ++i)
        out[i] = mixByte(a[i], b[i], weights[i]);
}

// Columns `columns[0]` and following ones into `left`, the ones right of them into `right`, as many as fill
// whole vectors and lie close enough together to be picked out of one; returns their count. Nothing from
// texel `end` on is read.
std::size_t pickNeighbours(const std::uint8_t* source, const std::int32_t* columns, std::size_t count,
                           std::int32_t end, std::uint8_t* left, std::uint8_t* right) {
    const Texels texels;
    const hn::RebindToSigned<Texels> places;
    const std::size_t step = hn::Lanes(texels);
    const auto reach = hn::Set(texels, static_cast<std::uint32_t>(step));
    std::size_t i = 0;
    for (; i + step <= count; i += step) {
        const std::int32_t first = columns[i];
        if (first + 1 + static_cast<std::int32_t>(step) > end) break;
        const auto offsets = hn::Sub(hn::LoadU(places, columns + i), hn::Set(places, first));
        // A column before the first one is a huge offset without its sign.
        if (!hn::AllTrue(texels, hn::Lt(hn::BitCast(texels, offsets), reach))) break;
        const auto indices = hn::IndicesFromVec(texels, offsets);
        const std::uint8_t* from = source + static_cast<std::ptrdiff_t>(first) * 4;
        const auto near = hn::LoadU(texels, reinterpret_cast<const std::uint32_t*>(from));
        const auto next = hn::LoadU(texels, reinterpret_cast<const std::uint32_t*>(from + 4));
        hn::StoreU(hn::TableLookupLanes(near, indices), texels,
                   reinterpret_cast<std::uint32_t*>(left + i * 4));
        hn::StoreU(hn::TableLookupLanes(next, indices), texels,
                   reinterpret_cast<std::uint32_t*>(right + i * 4));
    }
    return i;
}

// Neighbours are fetched into two short runs that stay in the first-level cache: by permuting vectors while
// the columns lie close together, otherwise by plain 8-byte loads (measured twice as fast as gather
// instructions). The split of a pair relies on the little-endian order asserted above.
void resampleRow(const std::uint8_t* source, const std::int32_t* columns, const std::int16_t* weights,
                 std::uint8_t* out, std::size_t pixels) {
    if (pixels == 0) return;
    constexpr std::size_t runLength = 256;
    alignas(64) std::array<std::uint8_t, runLength * 4> left;
    alignas(64) std::array<std::uint8_t, runLength * 4> right;
    const std::int32_t end = columns[pixels - 1] + 2;
    for (std::size_t start = 0; start < pixels; start += runLength) {
        const std::size_t run = std::min(runLength, pixels - start);
        std::size_t i = pickNeighbours(source, columns + start, run, end, left.data(), right.data());
        for (; i < run; ++i) {
            std::uint64_t pair;
            std::memcpy(&pair, source + static_cast<std::ptrdiff_t>(columns[start + i]) * 4, sizeof pair);
            const auto first = static_cast<std::uint32_t>(pair);
            const auto second = static_cast<std::uint32_t>(pair >> 32);
            std::memcpy(&left[i * 4], &first, sizeof first);
            std::memcpy(&right[i * 4], &second, sizeof second);
        }
        mixPixels(left.data(), right.data(), weights + start * 4, out + start * 4, run * 4);
    }
}

// In 1/256 levels. t * 257 * keep / 65536 is t * keep / 255 but for a trifle that rounding takes away.
std::uint8_t overByte(std::uint32_t source, std::uint32_t alpha, std::uint32_t opacity,
                      std::uint32_t target) {
    const std::uint32_t below = (target * 257 * (255 * 256 - alpha * opacity)) >> 16;
    return static_cast<std::uint8_t>(std::min((source * opacity + below + 128) >> 8, 255U));
}

#if HWY_TARGET != HWY_SCALAR
// The highest 16 bits of each lane, in all four of its quarters.
template <class Vector>
Vector spreadAlpha(Vector pixels) {
    const auto alpha = hn::ShiftRight<48>(pixels);
    const auto twice = hn::Or(alpha, hn::ShiftLeft<16>(alpha));
    return hn::Or(twice, hn::ShiftLeft<32>(twice));
}

// As many whole vectors as there are; returns the count of bytes done.
std::size_t blendWhole(const std::uint8_t* source, std::uint16_t opacity, std::uint8_t* target,
                       std::size_t count) {
    const Sums wide;
    const Words words;
    const Bytes narrow;
    const hn::Repartition<std::uint64_t, Sums> whole;
    const std::size_t step = hn::Lanes(wide);
    const auto scale = hn::Set(wide, opacity);
    const auto all = hn::Set(wide, std::uint16_t{255 * 256});
    std::size_t i = 0;
    for (; i + step <= count; i += step) {
        const auto over = hn::Mul(hn::PromoteTo(wide, hn::LoadU(narrow, source + i)), scale);
        const auto alpha = hn::BitCast(wide, spreadAlpha(hn::BitCast(whole, over)));
        const auto below =
            hn::Mul(hn::PromoteTo(wide, hn::LoadU(narrow, target + i)), hn::Set(wide, std::uint16_t{257}));
        const auto sum = hn::SaturatedAdd(over, hn::MulHigh(below, hn::Sub(all, alpha)));
        const auto rounded = hn::ShiftRight<8>(hn::SaturatedAdd(sum, hn::Set(wide, std::uint16_t{128})));
        hn::StoreU(hn::DemoteTo(narrow, hn::BitCast(words, rounded)), narrow, target + i);
    }
    return i;
}
#else
std::size_t blendWhole(const std::uint8_t*, std::uint16_t, std::uint8_t*, std::size_t) {
    return 0;
}
#endif

void blendOver(const std::uint8_t* source, std::uint16_t opacity, std::uint8_t* target, std::size_t pixels) {
    const std::size_t count = pixels * 4;
    for (std::size_t i = blendWhole(source, opacity, target, count); i < count; ++i)
        target[i] = overByte(source[i], source[i | 3], opacity, target[i]);
}

void mixColor(const std::uint8_t* pixel, std::int16_t weight, std::uint8_t* target, std::size_t pixels) {
    const Words words;
    const Bytes bytes;
    const std::size_t step = hn::Lanes(words);
    const std::size_t count = pixels * 4;
    alignas(64) std::array<std::uint8_t, 64> repeated;
    for (std::size_t i = 0; i < repeated.size(); ++i)
        repeated[i] = pixel[i % 4];
    const auto weights = hn::Set(words, weight);
    std::size_t i = 0;
    for (; i + step <= count; i += step) {
        const auto from = hn::PromoteTo(words, hn::LoadU(bytes, target + i));
        // A vector of less than a pixel goes through its channels.
        const auto color = hn::PromoteTo(words, hn::LoadU(bytes, repeated.data() + i % 4));
        const auto mixed = hn::Add(from, hn::MulFixedPoint15(hn::Sub(color, from), weights));
        hn::StoreU(hn::DemoteTo(bytes, mixed), bytes, target + i);
    }
    for (; i < count; ++i)
        target[i] = mixByte(target[i], pixel[i % 4], weight);
}

void mixByMatte(const std::uint8_t* a, const std::uint8_t* b, const std::uint8_t* matte, std::uint8_t* out,
                std::size_t pixels) {
    constexpr std::size_t runLength = 64;
    alignas(64) std::array<std::int16_t, runLength * 4> weights;
    for (std::size_t start = 0; start < pixels; start += runLength) {
        const std::size_t run = std::min(runLength, pixels - start);
        for (std::size_t i = 0; i < run; ++i) {
            const int person = matte[(start + i) * 4 + 2];
            std::fill_n(weights.data() + i * 4, 4, static_cast<std::int16_t>(person << 7 | person >> 1));
        }
        mixPixels(a + start * 4, b + start * 4, weights.data(), out + start * 4, run * 4);
    }
}

void addRow(const std::uint8_t* bytes, std::uint16_t* sums, std::size_t count) {
    const Sums wide;
    const Bytes narrow;
    const std::size_t step = hn::Lanes(wide);
    std::size_t i = 0;
    for (; i + step <= count; i += step) {
        const auto term = hn::PromoteTo(wide, hn::LoadU(narrow, bytes + i));
        hn::StoreU(hn::Add(hn::LoadU(wide, sums + i), term), wide, sums + i);
    }
    for (; i < count; ++i)
        sums[i] = static_cast<std::uint16_t>(sums[i] + bytes[i]);
}

void fifthOfRow(const std::uint16_t* sums, std::uint8_t* out, std::size_t count) {
    const Sums wide;
    const Words words;
    const Bytes narrow;
    const std::size_t step = hn::Lanes(wide);
    // 13108 / 65536 is a fifth, near enough to be exact for sums this small.
    const auto fifth = hn::Set(wide, std::uint16_t{13108});
    const auto half = hn::Set(wide, std::uint16_t{2});
    std::size_t i = 0;
    for (; i + step <= count; i += step) {
        const auto mean = hn::MulHigh(hn::Add(hn::LoadU(wide, sums + i), half), fifth);
        hn::StoreU(hn::DemoteTo(narrow, hn::BitCast(words, mean)), narrow, out + i);
    }
    for (; i < count; ++i)
        out[i] = static_cast<std::uint8_t>((sums[i] + 2) / 5);
}

// Every product loses half a unit on average, which the sum starts with.
hn::Vec<Sums> weightedVector(const std::uint16_t* const* rows, const std::uint16_t* weights, std::size_t taps,
                             std::size_t i) {
    const Sums wide;
    auto sum = hn::Set(wide, static_cast<std::uint16_t>(taps / 2));
    for (std::size_t tap = 0; tap < taps; ++tap)
        sum = hn::Add(sum, hn::MulHigh(hn::LoadU(wide, rows[tap] + i), hn::Set(wide, weights[tap])));
    return sum;
}

std::uint32_t weightedValue(const std::uint16_t* const* rows, const std::uint16_t* weights, std::size_t taps,
                            std::size_t i) {
    auto sum = static_cast<std::uint32_t>(taps / 2);
    for (std::size_t tap = 0; tap < taps; ++tap)
        sum += (std::uint32_t{rows[tap][i]} * weights[tap]) >> 16;
    return sum;
}

void weightedSum(const std::uint16_t* const* rows, const std::uint16_t* weights, std::size_t taps,
                 std::uint16_t* out, std::size_t count) {
    const Sums wide;
    const std::size_t step = hn::Lanes(wide);
    std::size_t i = 0;
    for (; i + step <= count; i += step)
        hn::StoreU(weightedVector(rows, weights, taps, i), wide, out + i);
    for (; i < count; ++i)
        out[i] = static_cast<std::uint16_t>(weightedValue(rows, weights, taps, i));
}

void weightedSumToBytes(const std::uint16_t* const* rows, const std::uint16_t* weights, std::size_t taps,
                        std::uint8_t* out, std::size_t count) {
    const Sums wide;
    const Words words;
    const Bytes narrow;
    const std::size_t step = hn::Lanes(wide);
    const auto half = hn::Set(wide, std::uint16_t{128});
    std::size_t i = 0;
    for (; i + step <= count; i += step) {
        const auto sum = weightedVector(rows, weights, taps, i);
        const auto rounded = hn::ShiftRight<8>(hn::SaturatedAdd(sum, half));
        hn::StoreU(hn::DemoteTo(narrow, hn::BitCast(words, rounded)), narrow, out + i);
    }
    for (; i < count; ++i)
        out[i] =
            static_cast<std::uint8_t>(std::min((weightedValue(rows, weights, taps, i) + 128) >> 8, 255U));
}

}  // namespace
}  // namespace tessaloom::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tessaloom {

HWY_EXPORT(mixRows);
HWY_EXPORT(resampleRow);
HWY_EXPORT(blendOver);
HWY_EXPORT(mixColor);
HWY_EXPORT(mixByMatte);
HWY_EXPORT(addRow);
HWY_EXPORT(fifthOfRow);
HWY_EXPORT(weightedSum);
HWY_EXPORT(weightedSumToBytes);

void PixelKernels::mixRows(const std::uint8_t* a, const std::uint8_t* b, std::int16_t weight,
                           std::uint8_t* out, std::size_t bytes) {
    HWY_DYNAMIC_DISPATCH(mixRows)(a, b, weight, out, bytes);
}

void PixelKernels::resampleRow(const std::uint8_t* source, const std::int32_t* columns,
                               const std::int16_t* weights, std::uint8_t* out, std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(resampleRow)(source, columns, weights, out, pixels);
}

void PixelKernels::blendOver(const std::uint8_t* source, std::uint16_t opacity, std::uint8_t* target,
                             std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(blendOver)(source, opacity, target, pixels);
}

void PixelKernels::mixColor(const std::uint8_t* pixel, std::int16_t weight, std::uint8_t* target,
                            std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(mixColor)(pixel, weight, target, pixels);
}

void PixelKernels::mixByMatte(const std::uint8_t* a, const std::uint8_t* b, const std::uint8_t* matte,
                              std::uint8_t* out, std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(mixByMatte)(a, b, matte, out, pixels);
}

void PixelKernels::addRow(const std::uint8_t* bytes, std::uint16_t* sums, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(addRow)(bytes, sums, count);
}

void PixelKernels::fifthOfRow(const std::uint16_t* sums, std::uint8_t* out, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(fifthOfRow)(sums, out, count);
}

void PixelKernels::weightedSum(const std::uint16_t* const* rows, const std::uint16_t* weights,
                               std::size_t taps, std::uint16_t* out, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(weightedSum)(rows, weights, taps, out, count);
}

void PixelKernels::weightedSumToBytes(const std::uint16_t* const* rows, const std::uint16_t* weights,
                                      std::size_t taps, std::uint8_t* out, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(weightedSumToBytes)(rows, weights, taps, out, count);
}

}  // namespace tessaloom
#endif
