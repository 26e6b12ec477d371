// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/YuvToBgra.h"

#include <algorithm>
#include <bit>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "media/YuvToBgra.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef TESSALOOM_YUV_TO_BGRA_WEIGHTS
#define TESSALOOM_YUV_TO_BGRA_WEIGHTS
namespace tessaloom {
namespace {

static_assert(std::endian::native == std::endian::little);

/// Samples go in scaled by 2^7 and come out of a 15-bit product with a weight scaled by 2^13 as 2^5.
constexpr int sampleBits = 7;
constexpr int weightBits = 13;
constexpr int resultBits = 5;

struct Weights {
    std::int16_t lumaOffset = 0;
    std::int16_t luma = 0;
    std::int16_t blueFromU = 0;
    std::int16_t greenFromU = 0;
    std::int16_t greenFromV = 0;
    std::int16_t redFromV = 0;
};

std::int16_t fixedPoint(double weight) {
    return static_cast<std::int16_t>(weight * (1 << weightBits) + (weight < 0 ? -0.5 : 0.5));
}

Weights weightsOf(YuvEncoding encoding) {
    struct Shares {
        double red;
        double blue;
    };
    constexpr Shares shares[] = {{0.299, 0.114}, {0.2126, 0.0722}, {0.2627, 0.0593}};
    const auto [red, blue] = shares[static_cast<std::size_t>(encoding.matrix)];
    const double green = 1 - red - blue;
    const double lumaScale = encoding.fullRange ? 1.0 : 255.0 / 219.0;
    const double chromaScale = encoding.fullRange ? 1.0 : 255.0 / 224.0;
    return {.lumaOffset = static_cast<std::int16_t>(encoding.fullRange ? 0 : 16),
            .luma = fixedPoint(lumaScale),
            .blueFromU = fixedPoint(2 * (1 - blue) * chromaScale),
            .greenFromU = fixedPoint(-2 * blue * (1 - blue) / green * chromaScale),
            .greenFromV = fixedPoint(-2 * red * (1 - red) / green * chromaScale),
            .redFromV = fixedPoint(2 * (1 - red) * chromaScale)};
}

struct Row {
    const std::uint8_t* luma;
    const std::uint8_t* u;
    const std::uint8_t* v;
    std::uint8_t* pixels;
    bool halfColumns;
};

int product(int sample, int weight) {
    return (sample * (1 << sampleBits) * weight + (1 << 14)) >> 15;
}

std::uint8_t channelOf(int sum) {
    return static_cast<std::uint8_t>(std::clamp((sum + (1 << (resultBits - 1))) >> resultBits, 0, 255));
}

/// One pixel, for what is left behind the last whole vector.
void convertPixel(const Row& row, const Weights& weights, int x) {
    const int column = row.halfColumns ? x / 2 : x;
    const int luma = product(row.luma[x] - weights.lumaOffset, weights.luma);
    const int u = row.u[column] - 128;
    const int v = row.v[column] - 128;
    std::uint8_t* pixel = row.pixels + 4 * x;
    pixel[0] = channelOf(luma + product(u, weights.blueFromU));
    pixel[1] = channelOf(luma + product(u, weights.greenFromU) + product(v, weights.greenFromV));
    pixel[2] = channelOf(luma + product(v, weights.redFromV));
    pixel[3] = 255;
}

}  // namespace
}  // namespace tessaloom
#endif

HWY_BEFORE_NAMESPACE();
namespace tessaloom::HWY_NAMESPACE {
namespace {

#if HWY_TARGET != HWY_SCALAR

namespace hn = hwy::HWY_NAMESPACE;

using Words = hn::ScalableTag<std::int16_t>;
using Bytes = hn::Rebind<std::uint8_t, Words>;
using Pairs = hn::Repartition<std::int32_t, Words>;
using Vector = hn::Vec<Words>;

Vector samples(Vector values, std::int16_t offset) {
    return hn::ShiftLeft<sampleBits>(hn::Sub(values, hn::Set(Words(), offset)));
}

Vector loadSamples(const std::uint8_t* plane, std::int16_t offset) {
    return samples(hn::PromoteTo(Words(), hn::LoadU(Bytes(), plane)), offset);
}

/// Each sample twice, for the two columns that share it.
Vector loadDoubled(const std::uint8_t* plane) {
    const Pairs pairs;
    const auto single = hn::PromoteTo(pairs, hn::LoadU(hn::Rebind<std::uint8_t, Pairs>(), plane));
    return samples(hn::BitCast(Words(), hn::Or(single, hn::ShiftLeft<16>(single))), 128);
}

hn::Vec<Bytes> channelBytes(Vector sum) {
    const auto rounded = hn::Add(sum, hn::Set(Words(), 1 << (resultBits - 1)));
    return hn::DemoteTo(Bytes(), hn::ShiftRight<resultBits>(rounded));
}

Vector weighted(Vector sample, std::int16_t weight) {
    return hn::MulFixedPoint15(sample, hn::Set(Words(), weight));
}

/// Converts as many columns as fill whole vectors and returns their count.
int convertColumns(const Row& row, const Weights& weights, int width) {
    const auto step = static_cast<int>(hn::Lanes(Words()));
    int x = 0;
    for (; x + step <= width; x += step) {
        const auto luma = weighted(loadSamples(row.luma + x, weights.lumaOffset), weights.luma);
        const auto u = row.halfColumns ? loadDoubled(row.u + x / 2) : loadSamples(row.u + x, 128);
        const auto v = row.halfColumns ? loadDoubled(row.v + x / 2) : loadSamples(row.v + x, 128);
        const auto green = hn::Add(weighted(u, weights.greenFromU), weighted(v, weights.greenFromV));
        hn::StoreInterleaved4(channelBytes(hn::Add(luma, weighted(u, weights.blueFromU))),
                              channelBytes(hn::Add(luma, green)),
                              channelBytes(hn::Add(luma, weighted(v, weights.redFromV))),
                              hn::Set(Bytes(), 255), Bytes(), row.pixels + std::ptrdiff_t{4} * x);
    }
    return x;
}

#else

int convertColumns(const Row&, const Weights&, int) {
    return 0;
}

#endif

void convertRow(const Row& row, const Weights& weights, int width) {
    for (int x = convertColumns(row, weights, width); x < width; ++x)
        convertPixel(row, weights, x);
}

}  // namespace
}  // namespace tessaloom::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tessaloom {

HWY_EXPORT(convertRow);

void yuvToBgra(const YuvView& source, YuvEncoding encoding, BgraImage& target) {
    const Weights weights = weightsOf(encoding);
    for (int y = 0; y < source.height; ++y) {
        const int chromaRow = source.halfRows ? y / 2 : y;
        const Row row{.luma = source.planes[0] + y * source.strides[0],
                      .u = source.planes[1] + chromaRow * source.strides[1],
                      .v = source.planes[2] + chromaRow * source.strides[2],
                      .pixels = target.row(y),
                      .halfColumns = source.halfColumns};
        HWY_DYNAMIC_DISPATCH(convertRow)(row, weights, source.width);
    }
}

}  // namespace tessaloom
#endif
