// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pipewire/PipeWireSoundSource.h"

#include <pipewire/keys.h>
#include <spa/param/audio/format-utils.h>

#include <cmath>
#include <utility>

#include "base/HostClock.h"

namespace tessaloom {
namespace {

constexpr int sampleRate = 48'000;
/// A graph time further from now belongs to no clock of ours.
constexpr double latestPlausibleDelay = 1.0;

double seconds(std::int64_t ticks, const pw_time& time) {
    return static_cast<double>(ticks) * time.rate.num / time.rate.denom;
}

}  // namespace

PipeWireSoundSource::PipeWireSoundSource(Kind kind, std::string node, std::string description)
    : kind_(kind), node_(std::move(node)), description_(std::move(description)), stream_(*this) {}

PipeWireSoundSource::~PipeWireSoundSource() {
    stream_.stop();
}

SoundFormat PipeWireSoundSource::format() const {
    return {.sampleRate = sampleRate, .channels = kind_ == Kind::microphone ? 1 : 2};
}

void PipeWireSoundSource::start(Handler handler) {
    handler_ = std::move(handler);
    stream_.start();
}

pw_properties* PipeWireSoundSource::makeProperties() const {
    pw_properties* properties =
        pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Capture", PW_KEY_MEDIA_ROLE,
                          "Production", PW_KEY_NODE_LATENCY, "1024/48000", nullptr);
    if (!node_.empty()) pw_properties_set(properties, PW_KEY_TARGET_OBJECT, node_.c_str());
    if (kind_ == Kind::systemAudio) pw_properties_set(properties, PW_KEY_STREAM_CAPTURE_SINK, "true");
    return properties;
}

std::vector<const spa_pod*> PipeWireSoundSource::formats(spa_pod_builder& builder) const {
    spa_audio_info_raw info{};
    info.format = SPA_AUDIO_FORMAT_F32;
    info.rate = sampleRate;
    info.channels = static_cast<std::uint32_t>(format().channels);
    info.position[0] = kind_ == Kind::microphone ? SPA_AUDIO_CHANNEL_MONO : SPA_AUDIO_CHANNEL_FL;
    info.position[1] = SPA_AUDIO_CHANNEL_FR;
    return {spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info)};
}

void PipeWireSoundSource::formatChosen(const spa_pod&) {
    lastTime_.reset();
}

void PipeWireSoundSource::received(const spa_buffer& buffer, const pw_time& time) {
    const auto bytes = contentOf(buffer);
    const auto channels = static_cast<std::size_t>(format().channels);
    const auto frames = bytes.size() / sizeof(float) / channels;
    if (frames == 0) return;
    const std::span samples(reinterpret_cast<const float*>(bytes.data()), frames * channels);
    handler_({.hostTime = timeOfFirst(frames, time),
              .samples = samples,
              .buffersLostBefore = lostBefore(frames, time)});
}

/// A cycle of the graph brings what a microphone took up to its start. What it brings of the speakers was
/// given to them in the cycle before, since they come after whoever listens to them.
double PipeWireSoundSource::timeOfFirst(std::size_t frames, const pw_time& time) const {
    const double now = HostClock::seconds();
    double end = static_cast<double>(time.now) * 1e-9;
    if (std::abs(now - end) > latestPlausibleDelay || time.rate.denom == 0) {
        end = now;
    } else if (kind_ == Kind::microphone) {
        end -= seconds(time.delay, time);
    }
    return end - static_cast<double>(frames) / sampleRate;
}

int PipeWireSoundSource::lostBefore(std::size_t frames, const pw_time& time) {
    const auto last = std::exchange(lastTime_, time);
    if (!last || time.rate.denom == 0 || frames == 0) return 0;
    const double passed = seconds(static_cast<std::int64_t>(time.ticks - last->ticks), time);
    const double buffers = passed * sampleRate / static_cast<double>(frames);
    return std::max(0, static_cast<int>(std::lround(buffers)) - 1);
}

}  // namespace tessaloom
