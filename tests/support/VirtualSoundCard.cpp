// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/VirtualSoundCard.h"

#include <spa/param/audio/format-utils.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "base/HostClock.h"

namespace tessaloom::test {
namespace {

constexpr std::uint32_t nominalRate = 48'000;
constexpr std::uint64_t defaultQuantum = 1024;
constexpr std::uint32_t channels = 2;
constexpr float beepLevel = 0.15F;
constexpr double never = 0;  ///< of a timer
constexpr double silenceBetweenBeeps = 0.5;
/// Cards of a group start together, but PipeWire 0.3 lets the first of them wake one whose converter isn't
/// made yet, which then calls a null pointer.
constexpr double othersStartWithin = 0.25;  ///< seconds

}  // namespace

VirtualSoundCard::VirtualSoundCard(const std::string& socket, const std::string& name, const Traits& traits)
    : VirtualDevice(socket, {{PW_KEY_MEDIA_CLASS, "Audio/Sink"},
                             {PW_KEY_NODE_NAME, name},
                             {PW_KEY_NODE_DESCRIPTION, name + " (test)"},
                             {PW_KEY_NODE_GROUP, group},
                             {PW_KEY_PRIORITY_SESSION, traits.hasDefaultSpeakers ? "30000" : "100"},
                             {PW_KEY_PRIORITY_DRIVER, std::to_string(traits.clockPriority)}}),
      latency_(traits.latency),
      rate_(nominalRate * (1 + traits.clockError)) {
    timer_ = pw_loop_add_timer(
        loop(), [](void* data, std::uint64_t) { static_cast<VirtualSoundCard*>(data)->beginCycle(); }, this);
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    spa_audio_info_raw info{};
    info.format = SPA_AUDIO_FORMAT_F32;
    info.rate = nominalRate;
    info.channels = channels;
    info.position[0] = SPA_AUDIO_CHANNEL_FL;
    info.position[1] = SPA_AUDIO_CHANNEL_FR;
    plugIn({spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info),
            latency(builder, SPA_DIRECTION_INPUT, traits.latency)},
           static_cast<pw_stream_flags>(PW_STREAM_FLAG_DRIVER | PW_STREAM_FLAG_MAP_BUFFERS |
                                        PW_STREAM_FLAG_RT_PROCESS),
           PW_DIRECTION_INPUT);
}

void VirtualSoundCard::streaming(bool on) {
    cycle_ = HostClock::seconds() + othersStartWithin;
    beginCycleAt(on ? cycle_ : never);
}

/// While another card sets the pace, this one has nothing to begin. As long as the clock says, whatever the
/// timer's delays.
void VirtualSoundCard::beginCycle() {
    if (stream() == nullptr || position_ == nullptr || !pw_stream_is_driving(stream())) return;
    spa_io_clock& clock = position_->clock;
    const std::uint64_t frames = clock.duration > 0 ? clock.duration : defaultQuantum;
    const double next = cycle_ + 2 * static_cast<double>(frames) / rate_;
    cycle_ += static_cast<double>(frames) / rate_;
    clock.nsec = static_cast<std::uint64_t>(std::llround(cycle_ * 1e9));
    clock.rate = SPA_FRACTION(1, nominalRate);
    clock.position += frames;
    clock.duration = frames;
    clock.delay = 0;
    clock.rate_diff = rate_ / nominalRate;
    clock.next_nsec = static_cast<std::uint64_t>(std::llround(next * 1e9));
    pw_stream_trigger_process(stream());
    beginCycleAt(next);
}

void VirtualSoundCard::beginCycleAt(double hostTime) {
    const double seconds = std::floor(hostTime);
    timespec due{static_cast<time_t>(seconds), std::lround((hostTime - seconds) * 1e9)};
    timespec once{};
    pw_loop_update_timer(loop(), timer_, &due, &once, true);
}

void VirtualSoundCard::process() {
    pw_buffer* buffer = pw_stream_dequeue_buffer(stream());
    if (buffer == nullptr) return;
    const spa_data& data = buffer->buffer->datas[0];
    pw_time time{};
    pw_stream_get_time_n(stream(), &time, sizeof time);
    const std::size_t count = data.chunk->size / sizeof(float);
    const double start =
        static_cast<double>(time.now) * 1e-9 + latency_ * static_cast<double>(count / channels) / rate_;
    play({static_cast<const float*>(data.data), count}, start);
    pw_stream_queue_buffer(stream(), buffer);
}

/// Both channels, from a HostClock time on.
void VirtualSoundCard::play(std::span<const float> samples, double start) {
    const auto isLoud = [](float sample) { return std::abs(sample) > beepLevel; };
    const auto loud = std::ranges::find_if(samples, isLoud);
    if (loud == samples.end()) return;
    const auto frame = static_cast<std::size_t>(loud - samples.begin()) / channels;
    const double time = start + static_cast<double>(frame) / rate_;
    const double before = std::exchange(lastLoud_, time);
    if (time < before + silenceBetweenBeeps) return;
    const std::lock_guard guard(lock_);
    beeps_.push_back(time);
}

std::vector<double> VirtualSoundCard::beepsPlayed() const {
    const std::lock_guard guard(lock_);
    return beeps_;
}

}  // namespace tessaloom::test
