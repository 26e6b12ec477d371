// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/SoundResampler.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libswresample/swresample.h>
}

#include <cmath>

#include "media/LibavHandles.h"

namespace tessaloom {
namespace {

constexpr auto problem = "The sound's rate can't be changed";
/// Over which the library spreads a whole number of samples: the longer, the finer the steps.
constexpr int stretchSpanSeconds = 8;

struct ConverterDelete {
    void operator()(SwrContext* context) const { swr_free(&context); }
};
using ConverterHandle = std::unique_ptr<SwrContext, ConverterDelete>;

ConverterHandle openConverter(int channels, int inputRate, int outputRate) {
    AVChannelLayout layout{};
    av_channel_layout_default(&layout, channels);
    SwrContext* opened = nullptr;
    const int result = swr_alloc_set_opts2(&opened, &layout, AV_SAMPLE_FMT_FLT, outputRate, &layout,
                                           AV_SAMPLE_FMT_FLT, inputRate, 0, nullptr);
    ConverterHandle context(opened);
    requireLibav(result, problem);
    requireLibav(swr_init(opened), problem);
    // Equal rates are copied until a first stretch, even of nothing, is asked for.
    requireLibav(swr_set_compensation(opened, 0, stretchSpanSeconds * outputRate), problem);
    return context;
}

}  // namespace

struct SoundResampler::Converter {
    ConverterHandle context;
};

SoundResampler::SoundResampler(int channels, int inputRate, int outputRate)
    : channels_(channels),
      inputRate_(inputRate),
      outputRate_(outputRate),
      converter_(std::make_unique<Converter>(Converter{openConverter(channels, inputRate, outputRate)})) {}

SoundResampler::~SoundResampler() = default;

void SoundResampler::setStretch(double stretch) {
    const int span = stretchSpanSeconds * outputRate_;
    const int change = static_cast<int>(std::lround(stretch * span));
    requireLibav(swr_set_compensation(converter_->context.get(), change, span), problem);
}

std::span<const float> SoundResampler::convert(std::span<const float> interleaved) {
    SwrContext* context = converter_->context.get();
    const int taken = static_cast<int>(interleaved.size()) / channels_;
    const int room = requireLibav(swr_get_out_samples(context, taken), problem);
    output_.resize(static_cast<std::size_t>(room) * static_cast<std::size_t>(channels_));
    auto* target = reinterpret_cast<std::uint8_t*>(output_.data());
    const auto* source = reinterpret_cast<const std::uint8_t*>(interleaved.data());
    const int made = requireLibav(swr_convert(context, &target, room, &source, taken), problem);
    return std::span(output_).first(static_cast<std::size_t>(made) * static_cast<std::size_t>(channels_));
}

double SoundResampler::delay() const {
    // In a unit that both rates divide, so that nothing is lost to rounding.
    const std::int64_t unit = std::int64_t{inputRate_} * outputRate_;
    return static_cast<double>(swr_get_delay(converter_->context.get(), unit)) / static_cast<double>(unit);
}

}  // namespace tessaloom
