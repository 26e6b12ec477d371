// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/MovieSink.h"

#include <utility>

namespace tessaloom {

MovieSink::MovieSink(std::unique_ptr<MovieWriter> writer) : writer_(std::move(writer)) {}

void MovieSink::append(std::int64_t index, const YuvImage& picture, bool /*changed*/) {
    writer_->appendVideo(picture, static_cast<double>(index) / framesPerSecond, 1 / framesPerSecond);
}

void MovieSink::finish() {
    writer_->finish();
}

}  // namespace tessaloom
