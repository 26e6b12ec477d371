// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/SoundConverter.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libswresample/swresample.h>
}

#include <array>

namespace tessaloom {
namespace {

constexpr auto problem = "The sound can't be converted";

}  // namespace

void SoundConverter::Delete::operator()(SwrContext* resampler) const {
    swr_free(&resampler);
}

void SoundConverter::convert(const AVFrame& frame, std::vector<StereoSample>& target) {
    const Format format{frame.format, frame.sample_rate, frame.ch_layout.nb_channels};
    if (!resampler_ || format != format_) {
        open(frame);
        format_ = format;
    }
    run(&frame, target);
}

void SoundConverter::finish(std::vector<StereoSample>& target) {
    target.clear();
    if (resampler_) run(nullptr, target);
    restart();
}

void SoundConverter::open(const AVFrame& frame) {
    AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
    AVChannelLayout source{};
    // Files may say how many channels there are and not which.
    if (frame.ch_layout.order == AV_CHANNEL_ORDER_UNSPEC) {
        av_channel_layout_default(&source, frame.ch_layout.nb_channels);
    } else {
        requireLibav<UnreadableMovie>(av_channel_layout_copy(&source, &frame.ch_layout), problem);
    }
    SwrContext* made = nullptr;
    const int result =
        swr_alloc_set_opts2(&made, &stereo, AV_SAMPLE_FMT_FLT, soundRate, &source,
                            static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr);
    av_channel_layout_uninit(&source);
    resampler_.reset(made);
    requireLibav<UnreadableMovie>(result, problem);
    if (frame.ch_layout.nb_channels == 1) {
        constexpr std::array<double, 2> bothSides{1, 1};
        requireLibav<UnreadableMovie>(swr_set_matrix(made, bothSides.data(), 1), problem);
    }
    requireLibav<UnreadableMovie>(swr_init(made), problem);
}

void SoundConverter::run(const AVFrame* frame, std::vector<StereoSample>& target) {
    const int input = frame != nullptr ? frame->nb_samples : 0;
    target.resize(static_cast<std::size_t>(
        requireLibav<UnreadableMovie>(swr_get_out_samples(resampler_.get(), input), problem)));
    auto* output = reinterpret_cast<std::uint8_t*>(target.data());
    const auto* const* data =
        frame != nullptr ? const_cast<const std::uint8_t* const*>(frame->extended_data) : nullptr;
    const int count =
        requireLibav<UnreadableMovie>(swr_convert(resampler_.get(), &output, static_cast<int>(target.size()),
                                                  const_cast<const std::uint8_t**>(data), input),
                                      problem);
    target.resize(static_cast<std::size_t>(count));
}

}  // namespace tessaloom
