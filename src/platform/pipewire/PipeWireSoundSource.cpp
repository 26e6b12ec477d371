// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pipewire/PipeWireSoundSource.h"

#include <pipewire/keys.h>
#include <spa/param/audio/format-utils.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "base/HostClock.h"
#include "base/Log.h"

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

void PipeWireSoundSource::open() {
    stream_.start();
    try {
        stream_.waitUntilItWorks(PipeWireStream::openLimit);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(description_ + " can't be used: " + error.what() + ".");
    }
}

void PipeWireSoundSource::start(Handler handler) {
    handler_ = std::move(handler);
    started_ = true;
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
    lost_.restart();
}

void PipeWireSoundSource::received(const spa_buffer& buffer, const PipeWireCycle& cycle) {
    if (!started_) return;
    const auto bytes = contentOf(buffer);
    const auto channels = static_cast<std::size_t>(format().channels);
    const auto frames = bytes.size() / sizeof(float) / channels;
    if (frames == 0) return;
    const std::span samples(reinterpret_cast<const float*>(bytes.data()), frames * channels);
    const double length = static_cast<double>(frames) / sampleRate;
    handler_({.hostTime = timeOfFirst(length, cycle),
              .samples = samples,
              .buffersLostBefore = lostBefore(length, cycle)});
}

void PipeWireSoundSource::troubled(const std::string& reason) {
    const bool isMicrophone = kind_ == Kind::microphone;
    qCCritical(isMicrophone ? Log::mic : Log::screenCapture, "No sound comes from %s: %s",
               description_.c_str(), reason.c_str());
}

/// A microphone tells how old the first sample of a cycle is. One that doesn't has at least taken them all.
/// Speakers that follow another device's clock pass on in each cycle what they are given in it. Those that
/// drive the graph come after whoever listens to them: what comes is what they were given the cycle before.
double PipeWireSoundSource::timeOfFirst(double length, const PipeWireCycle& cycle) const {
    const pw_time& time = cycle.time;
    const double now = HostClock::seconds();
    double start = static_cast<double>(time.now) * 1e-9;
    if (std::abs(now - start) > latestPlausibleDelay || time.rate.denom == 0) return now - length;
    start -= static_cast<double>(time.buffered) / sampleRate;
    if (!cycle.senderPlays) return start - std::max(seconds(time.delay, time), length);
    return start - (cycle.senderDrives ? cycle.length : 0) + cycle.playbackDelay;
}

int PipeWireSoundSource::lostBefore(double length, const PipeWireCycle& cycle) {
    if (cycle.time.rate.denom == 0) return 0;
    const double start = seconds(static_cast<std::int64_t>(cycle.time.ticks), cycle.time);
    return lost_.before({.driver = cycle.driver, .cycleStart = start, .length = length});
}

}  // namespace tessaloom
