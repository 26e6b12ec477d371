// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/GIFWriter.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <system_error>

#include "base/Log.h"
#include "export/Exporter.h"

namespace tessaloom {
namespace {

Exporter::Failure gifFailed() {
    return Exporter::Failure(Exporter::Failure::Reason::gifFailed);
}

/// Hundredths of a second from the start to the end of frame `index`.
int endOf(std::int64_t index, double fps) {
    return static_cast<int>(std::lround(static_cast<double>(index + 1) * 100 / fps));
}

/// What `action` returns; a refusal of the system is the GIF's failure.
template <typename Action>
auto orGifFailed(Action action) {
    try {
        return action();
    } catch (const std::system_error&) {
        std::throw_with_nested(gifFailed());
    }
}

}  // namespace

/// Of a file that was begun, a refusal is also logged.
template <typename Action>
void GIFWriter::orRefuse(Action action) {
    try {
        orGifFailed(action);
    } catch (const Exporter::Failure&) {
        qCCritical(Log::exporting, "GIF: the encoder refused the file (%lld of %lld frames)",
                   static_cast<long long>(framesAdded_), static_cast<long long>(capacity_));
        staging_.discard();
        throw;
    }
}

GIFWriter::GIFWriter(const std::filesystem::path& url, double fps, std::int64_t capacity, bool loop)
    : capacity_(std::max<std::int64_t>(capacity, 1)),
      fps_(fps),
      staging_(orGifFailed([&] { return ExportStaging(url); })),
      encoder_(orGifFailed([&] { return GifEncoder::create(staging_.url(), loop); })) {}

void GIFWriter::add(const BgraView& image) {
    writeFrame([&](int delay) { encoder_.add(image, delay); });
}

void GIFWriter::addAgain() {
    writeFrame([&](int delay) { encoder_.addAgain(delay); });
}

void GIFWriter::append(std::int64_t /*index*/, const BgraImage& picture, FrameChange change) {
    if (change != FrameChange::none) return add(picture.view());
    addAgain();
}

template <typename Action>
void GIFWriter::writeFrame(Action action) {
    if (framesAdded_ >= capacity_) {
        ++framesDropped_;
        return;
    }
    const int delay = endOf(framesAdded_, fps_) - endOf(framesAdded_ - 1, fps_);
    orRefuse([&] { action(delay); });
    ++framesAdded_;
}

void GIFWriter::finish() {
    if (framesDropped_ > 0)
        qCCritical(Log::exporting, "GIF: dropped %lld frame(s) beyond the %lld planned",
                   static_cast<long long>(framesDropped_), static_cast<long long>(capacity_));
    if (framesAdded_ < 1) {
        qCCritical(Log::exporting, "GIF: no frames were drawn, nothing to write");
        staging_.discard();
        throw gifFailed();
    }
    orRefuse([this] { encoder_.finish(); });
    staging_.commit();
}

}  // namespace tessaloom
