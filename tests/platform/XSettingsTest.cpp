// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/XSettings.h"

#include <gtest/gtest.h>

#include <QByteArray>

#include "platform/x11/X11InputSource.h"
#include "support/TestWindow.h"
#include "support/VirtualDesktop.h"
#include "support/XInjector.h"

namespace tessaloom {
namespace {

/// Writes settings as a settings manager does.
class Settings {
  public:
    explicit Settings(bool isBigEndian) : isBigEndian_(isBigEndian) {
        bytes_ = {static_cast<char>(isBigEndian ? 1 : 0), 0, 0, 0};
        put(7, 4);  // how often they were changed
    }

    Settings& withCount(std::uint32_t count) {
        put(count, 4);
        return *this;
    }
    Settings& withNumber(const std::string& name, std::uint32_t value) {
        putHead(0, name);
        put(value, 4);
        return *this;
    }
    Settings& withText(const std::string& name, const std::string& value) {
        putHead(1, name);
        put(static_cast<std::uint32_t>(value.size()), 4);
        putText(value);
        return *this;
    }
    Settings& withColor(const std::string& name) {
        putHead(2, name);
        put(0x12345678, 4);
        put(0x12345678, 4);
        return *this;
    }
    const std::string& bytes() const { return bytes_; }

  private:
    void put(std::uint32_t value, int byteCount) {
        for (int index = 0; index < byteCount; ++index) {
            const int shift = 8 * (isBigEndian_ ? byteCount - 1 - index : index);
            bytes_ += static_cast<char>(value >> static_cast<unsigned>(shift) & 0xFFU);
        }
    }
    void putText(const std::string& text) {
        bytes_ += text;
        bytes_.append((4 - text.size() % 4) % 4, '\0');
    }
    void putHead(char type, const std::string& name) {
        bytes_ += {type, '\0'};
        put(static_cast<std::uint32_t>(name.size()), 2);
        putText(name);
        put(3, 4);  // when it was changed
    }

    bool isBigEndian_;
    std::string bytes_;
};

Settings settingsOfADesktop(bool isBigEndian) {
    Settings settings(isBigEndian);
    settings.withCount(5)
        .withText("Net/ThemeName", "Greenhouse")
        .withColor("Gtk/Accent")
        .withNumber("Net/DoubleClickTime", 750)
        .withText("Gtk/FontName", "Sans 10")
        .withNumber("Net/DoubleClickDistance", 12);
    return settings;
}

TEST(XSettings, AreFoundByNameInEitherOrderOfBytes) {
    for (const bool isBigEndian : {false, true}) {
        const std::string bytes = settingsOfADesktop(isBigEndian).bytes();
        EXPECT_EQ(settingsNumber(bytes, "Net/DoubleClickTime"), 750);
        EXPECT_EQ(settingsNumber(bytes, "Net/DoubleClickDistance"), 12);
        EXPECT_EQ(settingsNumber(bytes, "Net/DndDragThreshold"), std::nullopt);
        EXPECT_EQ(settingsNumber(bytes, "Net/ThemeName"), std::nullopt);
    }
}

TEST(XSettings, ThatAreCutOrSenselessHoldNothing) {
    const std::string whole = settingsOfADesktop(false).bytes();
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(settingsNumber(whole.substr(0, length), "Net/DoubleClickDistance"), std::nullopt) << length;
    EXPECT_EQ(settingsNumber(std::string(64, '\xFF'), "Net/DoubleClickTime"), std::nullopt);
}

class DesktopWithSettings : public ::testing::Test {
  protected:
    DesktopWithSettings() { qputenv("DISPLAY", desktop.displayName().c_str()); }

    void setSettings(const std::string& bytes) const {
        const xcb_atom_t property = test::atomNamed(connection, "_XSETTINGS_SETTINGS");
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, manager.id(), property, property, 8,
                            static_cast<std::uint32_t>(bytes.size()), bytes.data());
        xcb_set_selection_owner(connection, manager.id(), test::atomNamed(connection, "_XSETTINGS_S0"),
                                XCB_CURRENT_TIME);
        test::synchronize(connection);
    }
    static ClickLimits limitsOfAStartedSource() {
        X11InputSource source(X11Connection::open());
        source.start([](const RawInput&) {});
        return source.clickLimits();
    }

    test::VirtualDesktop desktop{320, 240};
    test::XInjector injector{desktop.displayName()};
    xcb_connection_t* connection = injector.connection();
    test::TestWindow manager{connection, {.rect = {0, 0, 1, 1}, .isMapped = false}};
};

TEST_F(DesktopWithSettings, TellsWhatADoubleClickIs) {
    setSettings(settingsOfADesktop(false).bytes());
    EXPECT_EQ(limitsOfAStartedSource(), (ClickLimits{0.75, 12}));
}

TEST_F(DesktopWithSettings, MayTellPartOfItOrNonsense) {
    setSettings(Settings(false).withCount(1).withNumber("Net/DoubleClickTime", 250).bytes());
    EXPECT_EQ(limitsOfAStartedSource(), (ClickLimits{0.25, 5}));
    setSettings(Settings(false).withCount(1).withNumber("Net/DoubleClickTime", 0).bytes());
    EXPECT_EQ(limitsOfAStartedSource(), ClickLimits());
}

TEST_F(DesktopWithSettings, MayHaveNone) {
    EXPECT_EQ(limitsOfAStartedSource(), ClickLimits());
}

}  // namespace
}  // namespace tessaloom
