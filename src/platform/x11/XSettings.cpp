// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/XSettings.h"

#include <string>

namespace tessaloom {
namespace {

constexpr double millisecondsPerSecond = 1000.0;

/// Reads on from the beginning; what lies past the end is zero, and then nothing more is good.
class SettingsReader {
  public:
    explicit SettingsReader(std::string_view bytes) : bytes_(bytes) {
        isBigEndian_ = number(1) == 1;
        skip(3);
    }

    bool isGood() const { return isGood_; }

    void skip(std::size_t count) {
        isGood_ = isGood_ && count <= bytes_.size();
        bytes_.remove_prefix(isGood_ ? count : bytes_.size());
    }
    std::uint32_t number(int byteCount) {
        std::uint32_t value = 0;
        for (int index = 0; index < byteCount; ++index) {
            const auto byte =
                static_cast<std::uint32_t>(bytes_.empty() ? 0 : static_cast<unsigned char>(bytes_.front()));
            const int shift = 8 * (isBigEndian_ ? byteCount - 1 - index : index);
            value |= byte << static_cast<unsigned>(shift);
            skip(1);
        }
        return value;
    }
    /// Filled up to whole words of four bytes.
    std::string_view text(std::size_t length) {
        const std::string_view found = bytes_.substr(0, length);
        skip(length);
        skip((4 - length % 4) % 4);
        return found;
    }

  private:
    std::string_view bytes_;
    bool isGood_ = true;
    bool isBigEndian_ = false;
};

enum SettingType : std::uint32_t { integerSetting, textSetting, colorSetting };

/// Passes over the value of a setting of another type.
void skipValue(SettingsReader& reader, std::uint32_t type) {
    constexpr std::size_t colorSize = 8;
    if (type == textSetting) {
        reader.text(reader.number(4));
    } else {
        reader.skip(colorSize);
    }
}

std::string settingsOf(const X11Connection& connection) {
    const xcb_atom_t selection = connection.atom("_XSETTINGS_S0");
    if (selection == XCB_ATOM_NONE) return {};
    const X11Reply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr));
    if (!owner || owner->owner == XCB_NONE) return {};
    return connection.property(owner->owner, connection.atom("_XSETTINGS_SETTINGS")).value_or(std::string());
}

}  // namespace

std::optional<std::int32_t> settingsNumber(std::string_view settings, std::string_view name) {
    SettingsReader reader(settings);
    reader.skip(4);  // how often they were changed
    const std::uint32_t count = reader.number(4);
    for (std::uint32_t index = 0; index < count && reader.isGood(); ++index) {
        const std::uint32_t type = reader.number(1);
        reader.skip(1);
        const std::string_view found = reader.text(reader.number(2));
        reader.skip(4);  // when this one was changed
        if (type > colorSetting) return std::nullopt;
        if (type != integerSetting) {
            skipValue(reader, type);
            continue;
        }
        const auto value = static_cast<std::int32_t>(reader.number(4));
        if (found == name && reader.isGood()) return value;
    }
    return std::nullopt;
}

ClickLimits clickLimits(const X11Connection& connection) {
    ClickLimits limits;
    const std::string settings = settingsOf(connection);
    const auto time = settingsNumber(settings, "Net/DoubleClickTime");
    if (time && *time > 0) limits.longestPauseSeconds = *time / millisecondsPerSecond;
    const auto distance = settingsNumber(settings, "Net/DoubleClickDistance");
    if (distance && *distance >= 0) limits.greatestDistancePoints = *distance;
    return limits;
}

}  // namespace tessaloom
