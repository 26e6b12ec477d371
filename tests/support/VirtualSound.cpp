// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/VirtualSound.h"

#include <spa/param/audio/format-utils.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "support/VirtualWorld.h"

namespace tessaloom::test {
namespace {

constexpr int sampleRate = 48'000;
constexpr double beepLength = 0.1;
constexpr double beepFrequency = 1000;

std::vector<std::pair<std::string, std::string>> properties(VirtualSound::Kind kind, const std::string& name,
                                                            const std::string& group) {
    if (kind == VirtualSound::Kind::player) {
        return {{PW_KEY_MEDIA_TYPE, "Audio"}, {PW_KEY_MEDIA_CATEGORY, "Playback"}, {PW_KEY_NODE_NAME, name}};
    }
    std::vector<std::pair<std::string, std::string>> values{{PW_KEY_MEDIA_CLASS, "Audio/Source"},
                                                            {PW_KEY_NODE_NAME, name},
                                                            {PW_KEY_NODE_DESCRIPTION, name + " (test)"},
                                                            // Else the speakers' own sound is the default.
                                                            {PW_KEY_PRIORITY_SESSION, "40000"}};
    if (!group.empty()) values.emplace_back(PW_KEY_NODE_GROUP, group);
    return values;
}

}  // namespace

float beep(double hostTime) {
    const double phase = hostTime - std::floor(hostTime);
    if (phase >= beepLength || VirtualWorld::isStill(hostTime)) return 0;
    return static_cast<float>(0.5 * std::cos(2 * std::numbers::pi * beepFrequency * phase));
}

VirtualSound::VirtualSound(const std::string& socket, Kind kind, const std::string& name,
                           const std::string& group, float latency)
    : VirtualDevice(socket, properties(kind, name, group)), kind_(kind) {
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    spa_audio_info_raw info{};
    info.format = SPA_AUDIO_FORMAT_F32;
    info.rate = sampleRate;
    info.channels = 1;
    info.position[0] = SPA_AUDIO_CHANNEL_MONO;
    const auto autoConnect = kind == Kind::player ? PW_STREAM_FLAG_AUTOCONNECT : PW_STREAM_FLAG_NONE;
    std::vector<const spa_pod*> parameters{spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info)};
    if (latency > 0) parameters.push_back(VirtualDevice::latency(builder, SPA_DIRECTION_OUTPUT, latency));
    plugIn(std::move(parameters), static_cast<pw_stream_flags>(autoConnect | PW_STREAM_FLAG_MAP_BUFFERS |
                                                               PW_STREAM_FLAG_RT_PROCESS));
}

/// A microphone hands over what it took before the cycle's start; the speakers tell how long after it they
/// play.
void VirtualSound::process() {
    pw_buffer* buffer = pw_stream_dequeue_buffer(stream());
    if (buffer == nullptr) return;
    pw_time time{};
    pw_stream_get_time_n(stream(), &time, sizeof time);
    spa_data& data = buffer->buffer->datas[0];
    const auto room = data.maxsize / sizeof(float);
    const auto frames = buffer->requested > 0 ? std::min<std::size_t>(buffer->requested, room) : room;
    const double cycle = static_cast<double>(time.now) * 1e-9;
    const double first = kind_ != Kind::player
                             ? cycle - static_cast<double>(frames) / sampleRate
                             : cycle + static_cast<double>(time.delay) * time.rate.num / time.rate.denom;
    auto* samples = static_cast<float*>(data.data);
    for (std::size_t i = 0; i < frames; ++i)
        samples[i] = kind_ == Kind::deafMicrophone ? 0 : beep(first + static_cast<double>(i) / sampleRate);
    data.chunk->offset = 0;
    data.chunk->stride = sizeof(float);
    data.chunk->size = static_cast<std::uint32_t>(frames * sizeof(float));
    pw_stream_queue_buffer(stream(), buffer);
}

}  // namespace tessaloom::test
