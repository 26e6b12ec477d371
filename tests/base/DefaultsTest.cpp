// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Defaults.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <fstream>

#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

TEST(Defaults, AbsentKeysHoldNothing) {
    const test::TemporaryFolder folder;
    const Defaults defaults(folder.path() / "settings.ini");
    EXPECT_FALSE(defaults.boolean("captureMic"));
    EXPECT_FALSE(defaults.integer("countdownSeconds"));
    EXPECT_FALSE(defaults.number("webcamSize"));
    EXPECT_FALSE(defaults.text("webcamShape"));
}

TEST(Defaults, StoredValuesComeBackInALaterRun) {
    const test::TemporaryFolder folder;
    Defaults(folder.path() / "settings.ini").setBoolean("captureMic", true);
    Defaults(folder.path() / "settings.ini").setText("webcamShape", "pill");
    const Defaults later(folder.path() / "settings.ini");
    EXPECT_EQ(later.boolean("captureMic"), true);
    EXPECT_EQ(later.text("webcamShape"), "pill");
}

TEST(Defaults, ARemovedValueIsAbsent) {
    const test::TemporaryFolder folder;
    Defaults defaults(folder.path() / "settings.ini");
    defaults.setBoolean("first", true);
    defaults.setBoolean("second", true);
    defaults.remove("first");
    EXPECT_EQ(defaults.boolean("first"), std::nullopt);
    EXPECT_EQ(defaults.boolean("second"), true);
}

TEST(Defaults, AValueThatIsNoNumberIsNoInteger) {
    const test::TemporaryFolder folder;
    std::ofstream(folder.path() / "settings.ini") << "countdownSeconds=soon\nwebcamSize=0.25\n";
    const Defaults defaults(folder.path() / "settings.ini");
    EXPECT_FALSE(defaults.integer("countdownSeconds"));
    EXPECT_EQ(defaults.number("webcamSize"), 0.25);
}

TEST(Defaults, ASwitchMayBeWrittenAsPeopleDo) {
    const test::TemporaryFolder folder;
    std::ofstream(folder.path() / "settings.ini")
        << "a=on\nb=Yes\nc=1\nd=off\ne=NO\nf=0\ng=false\nh=perhaps\ni=\n";
    const Defaults defaults(folder.path() / "settings.ini");
    for (const char* key : {"a", "b", "c"})
        EXPECT_EQ(defaults.boolean(key), true) << key;
    for (const char* key : {"d", "e", "f", "g"})
        EXPECT_EQ(defaults.boolean(key), false) << key;
    for (const char* key : {"h", "i"})
        EXPECT_EQ(defaults.boolean(key), std::nullopt) << key;
}

TEST(Defaults, TheEnvironmentOverridesTheLibraryFolder) {
    qputenv("TESSALOOM_LIBRARY", "/somewhere/else");
    EXPECT_EQ(Defaults::libraryFolder(), "/somewhere/else");
    qputenv("TESSALOOM_LIBRARY", "");
    EXPECT_EQ(Defaults::libraryFolder().filename(), "Tessaloom");
    qunsetenv("TESSALOOM_LIBRARY");
}

TEST(Defaults, TheStateFolderIsTheDesktopsAndNeverRelative) {
    const QByteArray inherited = qgetenv("XDG_STATE_HOME");
    qputenv("XDG_STATE_HOME", "/somewhere/state");
    EXPECT_EQ(Defaults::stateFolder(), "/somewhere/state/tessaloom");
    for (const char* unset : {"", "relative"}) {
        qputenv("XDG_STATE_HOME", unset);
        EXPECT_TRUE(Defaults::stateFolder().string().ends_with("/.local/state/tessaloom")) << unset;
    }
    qputenv("XDG_STATE_HOME", inherited);
}

}  // namespace
}  // namespace tessaloom
