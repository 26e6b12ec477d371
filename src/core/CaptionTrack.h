// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "core/Caption.h"
#include "core/CaptionChip.h"

namespace tessaloom {

/// The caption lines with their lookup by time. Immutable; callable from any thread.
class CaptionTrack {
  public:
    CaptionTrack() = default;
    explicit CaptionTrack(std::vector<Caption> lines);

    const std::vector<Caption>& lines() const { return lines_; }

    /// The caption at a source time, faded over 0.12 s at both ends of its line. Where lines overlap the
    /// later one in the list wins. Only text, alpha and activeWord are set; the text is a view into this
    /// track.
    std::optional<CaptionChip> chip(double time) const;

    /// The distinct texts, in no particular order; views into this track.
    std::vector<std::string_view> uniqueTexts() const;

    bool operator==(const CaptionTrack&) const = default;

  private:
    const Caption* lineInForce(double time) const;

    std::vector<Caption> lines_;
    /// Starts and ends both ascend: the last line that has begun is the only one that can be in force.
    bool ascending_ = true;
};

}  // namespace tessaloom
