// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/ColorConversion.h"

#include <bit>
#include <cassert>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "media/ColorConversion.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef TESSALOOM_COLOR_CONVERSION_WEIGHTS
#define TESSALOOM_COLOR_CONVERSION_WEIGHTS
namespace tessaloom {
namespace {

static_assert(std::endian::native == std::endian::little);

constexpr int weightBits = 16;
constexpr int chromaBits = weightBits + 2;

struct Weights {
    std::int32_t blue = 0;
    std::int32_t green = 0;
    std::int32_t red = 0;
    /// The sample's value for black, with one half for rounding.
    std::int32_t offset = 0;
};

constexpr std::int32_t fixedPoint(double weight) {
    return static_cast<std::int32_t>(weight * (1 << weightBits) + (weight < 0 ? -0.5 : 0.5));
}

constexpr double redShare = 0.2126;
constexpr double greenShare = 0.7152;
constexpr double blueShare = 0.0722;
constexpr double lumaScale = 219.0 / 255.0;
constexpr double blueScale = 224.0 / 255.0 / (2 * (1 - blueShare));
constexpr double redScale = 224.0 / 255.0 / (2 * (1 - redShare));

constexpr Weights lumaWeights{fixedPoint(lumaScale * blueShare), fixedPoint(lumaScale* greenShare),
                              fixedPoint(lumaScale* redShare), (16 << weightBits) + (1 << (weightBits - 1))};
constexpr Weights blueWeights{fixedPoint(blueScale * (1 - blueShare)), fixedPoint(-blueScale* greenShare),
                              fixedPoint(-blueScale* redShare),
                              (128 << chromaBits) + (1 << (chromaBits - 1))};
constexpr Weights redWeights{fixedPoint(-redScale * blueShare), fixedPoint(-redScale* greenShare),
                             fixedPoint(redScale*(1 - redShare)),
                             (128 << chromaBits) + (1 << (chromaBits - 1))};

struct RowPair {
    const std::uint8_t* pixels[2];
    std::uint8_t* luma[2];
    std::uint8_t* chromaBlue;
    std::uint8_t* chromaRed;
};

template <int bits>
std::uint8_t weighted(const Weights& weights, int blue, int green, int red) {
    const int sum = weights.offset + weights.blue * blue + weights.green * green + weights.red * red;
    return static_cast<std::uint8_t>(sum >> bits);
}

/// Two by two pixels at column `x`, for what is left behind the last whole vector.
void convertSquare(const RowPair& rows, int x) {
    int sums[3] = {};
    for (int row = 0; row < 2; ++row) {
        for (int column = x; column < x + 2; ++column) {
            const std::uint8_t* pixel = rows.pixels[row] + 4 * column;
            rows.luma[row][column] = weighted<weightBits>(lumaWeights, pixel[0], pixel[1], pixel[2]);
            for (int channel = 0; channel < 3; ++channel)
                sums[channel] += pixel[channel];
        }
    }
    rows.chromaBlue[x / 2] = weighted<chromaBits>(blueWeights, sums[0], sums[1], sums[2]);
    rows.chromaRed[x / 2] = weighted<chromaBits>(redWeights, sums[0], sums[1], sums[2]);
}

}  // namespace
}  // namespace tessaloom
#endif

HWY_BEFORE_NAMESPACE();
namespace tessaloom::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET != HWY_SCALAR

using Lanes32 = hn::ScalableTag<std::int32_t>;
using Halves = hn::Repartition<std::int16_t, Lanes32>;
using Bytes = hn::Rebind<std::uint8_t, Lanes32>;
using Vector = hn::Vec<Lanes32>;

/// Of one or more pixels per lane, 16 bits each: blue in the low half and red in the high one; green in both.
struct Channels {
    Vector blueRed;
    Vector greenGreen;
};

Channels loadChannels(const std::uint8_t* pixels) {
    const Lanes32 lanes;
    const auto pixel = hn::LoadU(lanes, reinterpret_cast<const std::int32_t*>(pixels));
    const auto green = hn::And(hn::ShiftRight<8>(pixel), hn::Set(lanes, 0x000000FF));
    return {hn::And(pixel, hn::Set(lanes, 0x00FF00FF)), hn::Or(green, hn::ShiftLeft<16>(green))};
}

/// A lane's low half times `low` plus its high half times `high`.
Vector halvesWeighted(Vector halves, std::int32_t low, std::int32_t high) {
    const Lanes32 lanes;
    const Halves words;
    const auto weights = hn::BitCast(words, hn::Set(lanes, high * 65536 + (low & 0xFFFF)));
    auto upperSums = hn::Zero(lanes);
    const auto sums =
        hn::ReorderWidenMulAccumulate(lanes, hn::BitCast(words, halves), weights, hn::Zero(lanes), upperSums);
    return hn::RearrangeToOddPlusEven(sums, upperSums);
}

template <int bits>
void storeWeighted(const Weights& weights, const Channels& channels, std::uint8_t* out) {
    const Lanes32 lanes;
    // Green's weight may not fit 16 bits; its halves do.
    const std::int32_t lessGreen = weights.green / 2;
    auto sum =
        hn::Add(hn::Set(lanes, weights.offset), halvesWeighted(channels.blueRed, weights.blue, weights.red));
    sum = hn::Add(sum, halvesWeighted(channels.greenGreen, lessGreen, weights.green - lessGreen));
    hn::StoreU(hn::DemoteTo(Bytes(), hn::ShiftRight<bits>(sum)), Bytes(), out);
}

/// Sums of neighbouring lanes of `low` followed by those of `high`. The halves of a lane don't overflow.
Vector pairSums(Vector low, Vector high) {
    const Lanes32 lanes;
    return hn::Add(hn::ConcatEven(lanes, high, low), hn::ConcatOdd(lanes, high, low));
}

Channels columnSums(const RowPair& rows, std::ptrdiff_t x) {
    const Channels upper = loadChannels(rows.pixels[0] + 4 * x);
    const Channels lower = loadChannels(rows.pixels[1] + 4 * x);
    storeWeighted<weightBits>(lumaWeights, upper, rows.luma[0] + x);
    storeWeighted<weightBits>(lumaWeights, lower, rows.luma[1] + x);
    return {hn::Add(upper.blueRed, lower.blueRed), hn::Add(upper.greenGreen, lower.greenGreen)};
}

/// Converts as many columns as fill whole vectors and returns their count.
int convertColumns(const RowPair& rows, int width) {
    const auto step = static_cast<int>(hn::Lanes(Lanes32()));
    int x = 0;
    for (; x + 2 * step <= width; x += 2 * step) {
        const Channels left = columnSums(rows, x);
        const Channels right = columnSums(rows, x + step);
        const Channels sums{pairSums(left.blueRed, right.blueRed),
                            pairSums(left.greenGreen, right.greenGreen)};
        storeWeighted<chromaBits>(blueWeights, sums, rows.chromaBlue + x / 2);
        storeWeighted<chromaBits>(redWeights, sums, rows.chromaRed + x / 2);
    }
    return x;
}

#else

// A vector of one pixel has no neighbours to add up.
int convertColumns(const RowPair&, int) {
    return 0;
}

#endif

void convertRows(const RowPair& rows, int width) {
    for (int x = convertColumns(rows, width); x < width; x += 2)
        convertSquare(rows, x);
}

}  // namespace
}  // namespace tessaloom::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tessaloom {

HWY_EXPORT(convertRows);

void bgraToYuv(const BgraView& source, YuvImage& target, PixelRect region) {
    const int left = region.x & ~1;
    const int top = region.y & ~1;
    const int right = (region.x + region.width + 1) & ~1;
    const int bottom = (region.y + region.height + 1) & ~1;
    const BgraView part{source.row(top) + std::ptrdiff_t{4} * left, right - left, bottom - top,
                        source.stride};
    bgraToYuv(part, target, left, top);
}

void bgraToYuv(const BgraView& source, YuvImage& target, int x, int y) {
    assert((x | y | source.width | source.height) % 2 == 0);
    assert(x + source.width <= target.width() && y + source.height <= target.height());
    const auto at = [&target](int plane, int column, int row) {
        return target.plane(plane) + row * target.stride(plane) + column;
    };
    for (int row = 0; row < source.height; row += 2) {
        const RowPair rows{.pixels = {source.row(row), source.row(row + 1)},
                           .luma = {at(0, x, y + row), at(0, x, y + row + 1)},
                           .chromaBlue = at(1, x / 2, (y + row) / 2),
                           .chromaRed = at(2, x / 2, (y + row) / 2)};
        HWY_DYNAMIC_DISPATCH(convertRows)(rows, source.width);
    }
}

}  // namespace tessaloom
#endif
