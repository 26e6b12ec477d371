// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pipewire/PipeWireCameraSource.h"

#include <pipewire/keys.h>
#include <spa/buffer/meta.h>
#include <spa/param/video/format-utils.h>

#include <cmath>
#include <stdexcept>
#include <utility>

#include "base/HostClock.h"
#include "base/Log.h"
#include "media/MediaError.h"

namespace tessaloom {
namespace {

using Layout = CameraBuffer::Layout;

/// A camera's time further from now belongs to no clock of ours.
constexpr double latestPlausibleDelay = 1.0;

Layout layoutOf(spa_video_format format) {
    switch (format) {
        case SPA_VIDEO_FORMAT_BGRx:
        case SPA_VIDEO_FORMAT_BGRA:
            return Layout::bgrx;
        case SPA_VIDEO_FORMAT_RGBx:
        case SPA_VIDEO_FORMAT_RGBA:
            return Layout::rgbx;
        case SPA_VIDEO_FORMAT_NV12:
            return Layout::nv12;
        case SPA_VIDEO_FORMAT_I420:
            return Layout::i420;
        default:
            return Layout::yuyv;
    }
}

/// Cameras are BT.601 with limited range unless they say something else.
YuvEncoding encodingOf(const spa_video_info_raw& info) {
    YuvEncoding encoding{.matrix = YuvEncoding::Matrix::bt601,
                         .fullRange = info.color_range == SPA_VIDEO_COLOR_RANGE_0_255};
    if (info.color_matrix == SPA_VIDEO_COLOR_MATRIX_BT709) encoding.matrix = YuvEncoding::Matrix::bt709;
    return encoding;
}

CameraBuffer rawLayout(const spa_pod& format) {
    spa_video_info_raw info{};
    spa_format_video_raw_parse(&format, &info);
    return {.layout = layoutOf(info.format),
            .encoding = encodingOf(info),
            .width = static_cast<int>(info.size.width) & ~1,
            .height = static_cast<int>(info.size.height) & ~1,
            .bytes = {}};
}

double timeOf(const spa_buffer& buffer) {
    const double now = HostClock::seconds();
    const auto* header = static_cast<const spa_meta_header*>(
        spa_buffer_find_meta_data(&buffer, SPA_META_Header, sizeof(spa_meta_header)));
    if (header == nullptr) return now;
    const double taken = static_cast<double>(header->pts) * 1e-9;
    return std::abs(now - taken) < latestPlausibleDelay ? taken : now;
}

}  // namespace

PipeWireCameraSource::PipeWireCameraSource(std::string node, std::string description)
    : node_(std::move(node)), description_(std::move(description)), stream_(*this) {}

PipeWireCameraSource::~PipeWireCameraSource() {
    stream_.stop();
}

void PipeWireCameraSource::open() {
    stream_.start();
    try {
        stream_.waitUntilItWorks(PipeWireStream::openLimit);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(description_ + " can't be used: " + error.what() + ".");
    }
}

void PipeWireCameraSource::start(Handler handler) {
    handler_ = std::move(handler);
    started_ = true;
    stream_.start();
}

pw_properties* PipeWireCameraSource::makeProperties() const {
    pw_properties* properties = pw_properties_new(PW_KEY_MEDIA_TYPE, "Video", PW_KEY_MEDIA_CATEGORY,
                                                  "Capture", PW_KEY_MEDIA_ROLE, "Camera", nullptr);
    if (!node_.empty()) pw_properties_set(properties, PW_KEY_TARGET_OBJECT, node_.c_str());
    return properties;
}

std::vector<const spa_pod*> PipeWireCameraSource::formats(spa_pod_builder& builder) const {
    const spa_rectangle size{1280, 720};
    const spa_rectangle leastSize{2, 2};
    const spa_rectangle greatestSize{1920, 1200};
    const spa_fraction rate{30, 1};
    const spa_fraction leastRate{0, 1};
    const spa_fraction greatestRate{60, 1};
    const void* raw = spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat, SPA_FORMAT_mediaType,
        SPA_POD_Id(SPA_MEDIA_TYPE_video), SPA_FORMAT_mediaSubtype, SPA_POD_Id(SPA_MEDIA_SUBTYPE_raw),
        SPA_FORMAT_VIDEO_format,
        SPA_POD_CHOICE_ENUM_Id(8, SPA_VIDEO_FORMAT_YUY2, SPA_VIDEO_FORMAT_YUY2, SPA_VIDEO_FORMAT_NV12,
                               SPA_VIDEO_FORMAT_I420, SPA_VIDEO_FORMAT_BGRx, SPA_VIDEO_FORMAT_BGRA,
                               SPA_VIDEO_FORMAT_RGBx, SPA_VIDEO_FORMAT_RGBA),
        SPA_FORMAT_VIDEO_size, SPA_POD_CHOICE_RANGE_Rectangle(&size, &leastSize, &greatestSize),
        SPA_FORMAT_VIDEO_framerate, SPA_POD_CHOICE_RANGE_Fraction(&rate, &leastRate, &greatestRate));
    // Many cameras deliver their large pictures in this form only.
    const void* jpeg = spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat, SPA_FORMAT_mediaType,
        SPA_POD_Id(SPA_MEDIA_TYPE_video), SPA_FORMAT_mediaSubtype, SPA_POD_Id(SPA_MEDIA_SUBTYPE_mjpg),
        SPA_FORMAT_VIDEO_size, SPA_POD_CHOICE_RANGE_Rectangle(&size, &leastSize, &greatestSize),
        SPA_FORMAT_VIDEO_framerate, SPA_POD_CHOICE_RANGE_Fraction(&rate, &leastRate, &greatestRate));
    return {static_cast<const spa_pod*>(raw), static_cast<const spa_pod*>(jpeg)};
}

void PipeWireCameraSource::formatChosen(const spa_pod& format) {
    spa_video_info info{};
    spa_format_parse(&format, &info.media_type, &info.media_subtype);
    const bool isJpeg = info.media_subtype == SPA_MEDIA_SUBTYPE_mjpg;
    layout_ = isJpeg ? CameraBuffer{.layout = Layout::mjpeg, .encoding = {}, .bytes = {}} : rawLayout(format);
}

void PipeWireCameraSource::received(const spa_buffer& buffer, const PipeWireCycle&) {
    if (!started_) return;
    CameraBuffer picture = layout_;
    picture.bytes = contentOf(buffer);
    if (picture.bytes.empty()) return;
    picture.stride = buffer.datas[0].chunk->stride;
    try {
        handler_({.hostTime = timeOf(buffer), .pixels = pixels_.toBgra(picture)});
    } catch (const MediaError& error) {
        qCInfo(Log::webcam, "A picture of the camera is left out: %s", error.what());
    }
}

void PipeWireCameraSource::troubled(const std::string& reason) {
    qCCritical(Log::webcam, "No picture comes from %s: %s", description_.c_str(), reason.c_str());
}

}  // namespace tessaloom
