// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/KeptSound.h"

#include <algorithm>
#include <cstdlib>

namespace tessaloom {
namespace {

/// Half of a joint, 2.5 ms: long enough not to click, too short to be heard as a fade.
constexpr std::int64_t halfJoint = soundRate / 400;

}  // namespace

KeptSound::KeptSound(std::unique_ptr<AudioReader> reader, std::span<const TimeSegment> segments,
                     double offset)
    : reader_(std::move(reader)), pieces_(piecesOf(segments, offset)) {
    if (!pieces_.empty() && pieces_.front().source > 0) makeJoint(0);
}

std::vector<KeptSound::Piece> KeptSound::piecesOf(std::span<const TimeSegment> segments, double offset) {
    std::vector<Piece> pieces;
    double sum = 0;
    for (const TimeSegment& segment : segments) {
        Piece piece{.begin = soundPosition(sum), .source = soundPosition(segment.start - offset)};
        sum += segment.length();
        // Places are rounded, never lengths, so that rounding doesn't add up.
        piece.end = soundPosition(sum);
        if (!pieces.empty()) {
            Piece& last = pieces.back();
            // A split that leaves nothing out is no joint.
            if (std::abs(last.source + last.length() - piece.source) <= 1) {
                last.end = piece.end;
                continue;
            }
        }
        pieces.push_back(piece);
    }
    return pieces;
}

void KeptSound::read(std::span<StereoSample> target) {
    while (!target.empty()) {
        std::size_t count = 0;
        if (jointUsed_ < joint_.size()) {
            count = std::min(target.size(), joint_.size() - jointUsed_);
            std::copy_n(joint_.begin() + static_cast<std::ptrdiff_t>(jointUsed_), count, target.begin());
            jointUsed_ += count;
        } else if (piece_ == pieces_.size()) {
            std::ranges::fill(target, StereoSample{});
            return;
        } else if (const std::int64_t left = pieces_[piece_].end - fadeInto(piece_ + 1) - position_;
                   left > 0) {
            count = std::min(target.size(), static_cast<std::size_t>(left));
            reader_->read(pieces_[piece_].source + position_ - pieces_[piece_].begin, target.first(count));
        } else {
            makeJoint(++piece_);
            continue;
        }
        position_ += static_cast<std::int64_t>(count);
        target = target.subspan(count);
    }
}

/// How far the joint at a piece's beginning reaches to either side; behind the last piece is one too.
std::int64_t KeptSound::fadeInto(std::size_t piece) const {
    std::int64_t reach = halfJoint;
    if (piece > 0) reach = std::min(reach, pieces_[piece - 1].length() / 2);
    if (piece < pieces_.size()) reach = std::min(reach, pieces_[piece].length() / 2);
    return reach;
}

/// Fades from the piece before into this one; at either end of the result there is silence beyond.
void KeptSound::makeJoint(std::size_t piece) {
    const std::int64_t reach = fadeInto(piece);
    const std::int64_t before = piece > 0 ? reach : 0;
    const std::int64_t after = piece < pieces_.size() ? reach : 0;
    joint_.assign(static_cast<std::size_t>(before + after), StereoSample{});
    jointUsed_ = 0;
    const auto add = [this](const Piece& source, std::int64_t position, bool rising) {
        std::vector<StereoSample> sound(joint_.size());
        reader_->read(source.source + position - source.begin, sound);
        for (std::size_t i = 0; i < sound.size(); ++i) {
            const float risen = (static_cast<float>(i) + 0.5F) / static_cast<float>(sound.size());
            joint_[i] += sound[i] * (rising ? risen : 1 - risen);
        }
    };
    if (piece > 0) add(pieces_[piece - 1], pieces_[piece - 1].end - before, false);
    if (piece < pieces_.size()) add(pieces_[piece], pieces_[piece].begin - before, true);
}

}  // namespace tessaloom
