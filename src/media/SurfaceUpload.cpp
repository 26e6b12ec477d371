// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/SurfaceUpload.h"

extern "C" {
#include <libavutil/hwcontext.h>
#include <libavutil/imgutils.h>
}

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace tessaloom {
namespace {

constexpr auto deviceProblem = "The graphics device can't be opened";
constexpr auto uploadProblem = "A picture doesn't reach the graphics device";

struct ConstraintsDelete {
    void operator()(AVHWFramesConstraints* constraints) const { av_hwframe_constraints_free(&constraints); }
};

/// Throws an EncodingError where libav gave no object, which is all it tells then.
template <typename Handle>
Handle required(Handle handle, const char* what) {
    if (!handle) requireLibav<EncodingError>(AVERROR(ENOMEM), what);
    return handle;
}

LibavHandle<AVBufferRef> openDevice(const SurfaceDevice& device) {
    quietLibav();
    AVBufferRef* opened = nullptr;
    const AVHWDeviceType type = av_hwdevice_find_type_by_name(device.interface.c_str());
    requireLibav<EncodingError>(av_hwdevice_ctx_create(&opened, type, device.name.c_str(), nullptr, 0),
                                deviceProblem);
    return LibavHandle<AVBufferRef>(opened);
}

AVPixelFormat surfaceFormat(AVBufferRef& device) {
    using Constraints = std::unique_ptr<AVHWFramesConstraints, ConstraintsDelete>;
    const auto constraints =
        required(Constraints(av_hwdevice_get_hwframe_constraints(&device, nullptr)), deviceProblem);
    return *constraints->valid_hw_formats;
}

AVHWFramesContext& contextOf(const AVBufferRef& surfaces) {
    return *reinterpret_cast<AVHWFramesContext*>(surfaces.data);
}

/// Puts the U and V samples of each place side by side.
void interleaveChroma(const YuvImage& image, AVFrame& target) {
    const std::ptrdiff_t columns = image.width() / 2;
    for (std::ptrdiff_t y = 0; y < image.height() / 2; ++y) {
        const std::uint8_t* u = image.plane(1) + y * image.stride(1);
        const std::uint8_t* v = image.plane(2) + y * image.stride(2);
        std::uint8_t* row = target.data[1] + y * target.linesize[1];
        for (std::ptrdiff_t x = 0; x < columns; ++x) {
            row[2 * x] = u[x];
            row[2 * x + 1] = v[x];
        }
    }
}

LibavHandle<AVFrame> nv12Copy(const YuvImage& image) {
    LibavHandle<AVFrame> copy(av_frame_alloc());
    copy->format = AV_PIX_FMT_NV12;
    copy->width = image.width();
    copy->height = image.height();
    requireLibav<EncodingError>(av_frame_get_buffer(copy.get(), 0), uploadProblem);
    av_image_copy_plane(copy->data[0], copy->linesize[0], image.plane(0), static_cast<int>(image.stride(0)),
                        image.width(), image.height());
    interleaveChroma(image, *copy);
    return copy;
}

/// Lets the frame live as long as the surface, since some devices read from it after the upload has returned.
void keepAlong(LibavHandle<AVFrame> frame, AVFrame& surface) {
    constexpr auto release = [](void*, std::uint8_t* kept) {
        LibavDelete()(reinterpret_cast<AVFrame*>(kept));
    };
    auto* const kept = reinterpret_cast<std::uint8_t*>(frame.get());
    surface.opaque_ref =
        required(LibavHandle<AVBufferRef>(av_buffer_create(kept, sizeof(AVFrame), release, nullptr, 0)),
                 uploadProblem)
            .release();
    static_cast<void>(frame.release());
}

}  // namespace

SurfaceUpload SurfaceUpload::open(const SurfaceDevice& device, int width, int height) {
    const auto opened = openDevice(device);
    auto surfaces = required(LibavHandle<AVBufferRef>(av_hwframe_ctx_alloc(opened.get())), deviceProblem);
    AVHWFramesContext& context = contextOf(*surfaces);
    context.format = surfaceFormat(*opened);
    context.sw_format = AV_PIX_FMT_NV12;
    context.width = width;
    context.height = height;
    requireLibav<EncodingError>(av_hwframe_ctx_init(surfaces.get()), deviceProblem);
    return SurfaceUpload(std::move(surfaces));
}

SurfaceUpload::SurfaceUpload(LibavHandle<AVBufferRef> surfaces) : surfaces_(std::move(surfaces)) {}

void SurfaceUpload::announceTo(AVCodecContext& encoder) const {
    encoder.pix_fmt = contextOf(*surfaces_).format;
    encoder.sw_pix_fmt = contextOf(*surfaces_).sw_format;
    encoder.hw_frames_ctx =
        required(LibavHandle<AVBufferRef>(av_buffer_ref(surfaces_.get())), deviceProblem).release();
}

void SurfaceUpload::upload(const YuvImage& image, AVFrame& surface) const {
    auto copy = nv12Copy(image);
    requireLibav<EncodingError>(av_hwframe_get_buffer(surfaces_.get(), &surface, 0), uploadProblem);
    requireLibav<EncodingError>(av_hwframe_transfer_data(&surface, copy.get(), 0), uploadProblem);
    keepAlong(std::move(copy), surface);
}

}  // namespace tessaloom
