// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/VirtualCamera.h"

#include <spa/buffer/meta.h>
#include <spa/param/buffers.h>
#include <spa/param/video/format-utils.h>

#include <array>
#include <cmath>

#include "base/HostClock.h"
#include "support/VirtualWorld.h"

namespace tessaloom::test {
namespace {

constexpr int stride = VirtualCamera::width * 2;
constexpr double pictureInterval = 1e9 / 30;  ///< nanoseconds
constexpr double flashLength = 0.2;
constexpr double foreignClock = 5000;  ///< seconds before ours

const spa_pod* pod(const void* object) {
    return static_cast<const spa_pod*>(object);
}

}  // namespace

VirtualCamera::VirtualCamera(const std::string& socket, const std::string& name, Behaviour behaviour,
                             double clockError)
    : VirtualDevice(socket, {{PW_KEY_MEDIA_CLASS, "Video/Source"},
                             {PW_KEY_MEDIA_ROLE, "Camera"},
                             {PW_KEY_NODE_NAME, name},
                             {PW_KEY_NODE_DESCRIPTION, name + " (test)"}}),
      behaviour_(behaviour),
      pictureInterval_(std::lround(pictureInterval / (1 + clockError))) {
    timer_ = pw_loop_add_timer(
        loop(),
        [](void* data, std::uint64_t) {
            const auto* camera = static_cast<VirtualCamera*>(data);
            if (camera->stream() != nullptr) pw_stream_trigger_process(camera->stream());
        },
        this);
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    const spa_rectangle size{width, height};
    const spa_fraction rate{30, 1};
    const auto pixels =
        behaviour == Behaviour::hasStrangePictures ? SPA_VIDEO_FORMAT_GRAY16_BE : SPA_VIDEO_FORMAT_YUY2;
    const void* format = spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat, SPA_FORMAT_mediaType,
        SPA_POD_Id(SPA_MEDIA_TYPE_video), SPA_FORMAT_mediaSubtype, SPA_POD_Id(SPA_MEDIA_SUBTYPE_raw),
        SPA_FORMAT_VIDEO_format, SPA_POD_Id(pixels), SPA_FORMAT_VIDEO_size, SPA_POD_Rectangle(&size),
        SPA_FORMAT_VIDEO_framerate, SPA_POD_Fraction(&rate));
    plugIn({pod(format)}, static_cast<pw_stream_flags>(PW_STREAM_FLAG_DRIVER | PW_STREAM_FLAG_MAP_BUFFERS));
}

void VirtualCamera::formatChosen() {
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    const void* buffers = spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers, SPA_PARAM_BUFFERS_buffers,
        SPA_POD_CHOICE_RANGE_Int(4, 2, 8), SPA_PARAM_BUFFERS_blocks, SPA_POD_Int(1), SPA_PARAM_BUFFERS_size,
        SPA_POD_Int(stride * height), SPA_PARAM_BUFFERS_stride, SPA_POD_Int(stride),
        SPA_PARAM_BUFFERS_dataType, SPA_POD_CHOICE_FLAGS_Int(1 << SPA_DATA_MemFd | 1 << SPA_DATA_MemPtr));
    const void* header = spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta, SPA_PARAM_META_type, SPA_POD_Id(SPA_META_Header),
        SPA_PARAM_META_size, SPA_POD_Int(sizeof(spa_meta_header)));
    std::array params{pod(buffers), pod(header)};
    const bool tellsTimes = behaviour_ != Behaviour::tellsNoTimes;
    pw_stream_update_params(stream(), params.data(), tellsTimes ? 2 : 1);
}

void VirtualCamera::streaming(bool on) {
    const bool runs = on && behaviour_ != Behaviour::isStuck;
    timespec first{0, runs ? 1 : 0};
    timespec interval{0, runs ? pictureInterval_ : 0};
    pw_loop_update_timer(loop(), timer_, &first, &interval, false);
}

void VirtualCamera::process() {
    pw_buffer* buffer = pw_stream_dequeue_buffer(stream());
    if (buffer == nullptr) return;
    const double now = HostClock::seconds();
    spa_data& data = buffer->buffer->datas[0];
    const bool flash = now - std::floor(now) < flashLength && !VirtualWorld::isStill(now);
    auto* bytes = static_cast<std::uint8_t*>(data.data);
    for (int i = 0; i < stride * height; i += 2) {
        bytes[i] = flash ? 235 : 16;
        bytes[i + 1] = 128;
    }
    data.chunk->offset = 0;
    data.chunk->size = stride * height;
    data.chunk->stride = stride;
    auto* header = static_cast<spa_meta_header*>(
        spa_buffer_find_meta_data(buffer->buffer, SPA_META_Header, sizeof(spa_meta_header)));
    const double told = behaviour_ == Behaviour::tellsForeignTimes ? now - foreignClock : now;
    if (header != nullptr)
        *header = {.flags = 0, .offset = 0, .pts = std::llround(told * 1e9), .dts_offset = 0, .seq = count_};
    ++count_;
    pw_stream_queue_buffer(stream(), buffer);
}

}  // namespace tessaloom::test
