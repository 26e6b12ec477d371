// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/SoundPump.h"

#include <algorithm>
#include <utility>

namespace tessaloom {
namespace {

constexpr std::int64_t blockLength = 1024;

}  // namespace

SoundPump::SoundPump(AudioMix mix, MovieWriter& writer) : mix_(std::move(mix)), writer_(writer) {}

void SoundPump::pumpTo(double seconds, const std::stop_token& stop) {
    pump(std::min(soundPosition(seconds), mix_.length), stop);
}

void SoundPump::finish(const std::stop_token& stop) {
    pump(mix_.length, stop);
}

void SoundPump::pump(std::int64_t end, const std::stop_token& stop) {
    while (position_ < end) {
        if (stop.stop_requested()) throw ExportCancelled();
        block_.resize(static_cast<std::size_t>(std::min(mix_.length - position_, blockLength)));
        mix_.sound->read(block_);
        writer_.appendSound(interleaved(block_));
        position_ += static_cast<std::int64_t>(block_.size());
    }
}

}  // namespace tessaloom
