// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/InputEvent.h"

namespace tessaloom {

/// The key label of one frame. The text is a view into the track it came from, valid while that lives.
struct KeystrokeChip {
    std::string_view text;
    float alpha = 0;

    bool operator==(const KeystrokeChip&) const = default;
};

/// Which key label shows when. Immutable; callable from any thread.
class KeystrokeTrack {
  public:
    struct Stroke {
        double pts = 0;
        std::string text;

        bool operator==(const Stroke&) const = default;
    };

    KeystrokeTrack() = default;
    /// Takes the key presses that have a label, in the list's order.
    explicit KeystrokeTrack(std::span<const InputEvent> events);

    const std::vector<Stroke>& strokes() const { return strokes_; }

    /// The latest press: opaque for 1 s, then faded over 0.35 s. An earlier press never comes back.
    std::optional<KeystrokeChip> chip(double time) const;

    /// The distinct labels, in no particular order; views into this track.
    std::vector<std::string_view> uniqueTexts() const;

    bool operator==(const KeystrokeTrack&) const = default;

  private:
    const Stroke* latestStroke(double time) const;

    std::vector<Stroke> strokes_;
    bool ascending_ = true;
};

}  // namespace tessaloom
