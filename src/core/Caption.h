// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/TimeSegment.h"

namespace tessaloom {

/// One spoken word, in source seconds.
struct CaptionWord {
    std::string text;
    double start = 0;
    double end = 0;

    bool operator==(const CaptionWord&) const = default;
};

/// One line on screen, in source seconds. A line typed by hand has no `words`, and then no word lights up.
struct Caption {
    double start = 0;
    double end = 0;
    std::string text;
    std::vector<CaptionWord> words;

    /// Index into `words` of the word to mark: the one being spoken or, in a pause, the last one spoken.
    std::optional<int> activeWord(double time) const;

    /// The index-th piece of `text` split at blanks, empty pieces left out. A view into `text`.
    std::optional<std::string_view> word(int index) const;

    /// The line without the words that fall into `ranges`. A line that loses all its words comes back empty
    /// (times 0, no text); one that loses none, or has none, comes back as it is.
    Caption removing(std::span<const TimeSegment> ranges) const;

    bool operator==(const Caption&) const = default;
};

}  // namespace tessaloom
