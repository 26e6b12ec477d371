// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "core/RawString.h"
#include "core/RelativePoint.h"

namespace tessaloom {

/// A click, key press or scroll, `pts` seconds after the first frame.
struct InputEvent {
    enum class EventType { leftClick, rightClick, doubleClick, keyDown, scroll };

    double pts = 0;
    EventType type = EventType::leftClick;
    /// Relative to the captured area.
    std::optional<RelativePoint> location;
    /// What a key press shows, e.g. "⌃S".
    std::optional<std::string> keyLabel;

    bool isClick() const {
        return type == EventType::leftClick || type == EventType::rightClick ||
               type == EventType::doubleClick;
    }

    bool operator==(const InputEvent&) const = default;
};

template <>
struct RawStrings<InputEvent::EventType> {
    static constexpr std::array<std::string_view, 5> values{"leftClick", "rightClick", "doubleClick",
                                                            "keyDown", "scroll"};
};

}  // namespace tessaloom
