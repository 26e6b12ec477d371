// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QImage>
#include <cstdlib>
#include <fstream>
#include <memory>

#include "desktop/DesktopRecording.h"
#include "desktop/ScreenPicture.h"
#include "support/TestWindow.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr std::uint32_t green = 0x20A040;
constexpr std::uint32_t red = 0xC02020;
constexpr std::uint32_t blue = 0x2040C0;
constexpr std::uint32_t plainGrey = 0x1F1F1F;

/// A recording that hides the icons of a desktop whose settings are the test's.
class DesktopCover : public ::testing::Test {
  protected:
    explicit DesktopCover(WindowManager manager = WindowManager::None) : desktop(640, 480, manager) {
        environment = programEnvironment(desktop.environment(), folder.path());
        environment["XDG_CONFIG_HOME"] = folder.path().string();
        std::ofstream(environment["TESSALOOM_CONFIG"]) << "hideDesktopIcons=true\n";
    }
    /// What a display shows once it is covered.
    BgraImage recorded(const std::string& display = "0") {
        ChildProcess program({TESSALOOM_PROGRAM, "record", "--display", display, "--countdown", "0",
                              "--no-microphone", "--no-system-audio", "--duration", "1.2"},
                             environment);
        EXPECT_EQ(program.waitForExit(20s), 0) << program.errors();
        const std::string output = program.output();
        return recordedPicture(TakeBundle{output.substr(0, output.find('\n'))}, 1.0);
    }
    void write(const fs::path& file, const std::string& text) const {
        fs::create_directories((folder.path() / file).parent_path());
        std::ofstream(folder.path() / file) << text;
    }
    /// Small, of one colour on its left half and another on its right.
    fs::path picture(const fs::path& name, std::uint32_t left, std::uint32_t right,
                     QSize size = {40, 60}) const {
        const fs::path file = folder.path() / name;
        fs::create_directories(file.parent_path());
        QImage image(size, QImage::Format_RGB32);
        image.fill(left);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = image.width() / 2; x < image.width(); ++x)
                image.setPixel(x, y, right);
        }
        EXPECT_TRUE(image.save(QString::fromStdString(file.string())));
        return file;
    }
    /// A program that stands for the desktop's own.
    void putInPath(const std::string& program, const std::string& script) {
        write("bin/" + program, "#!/bin/sh\n" + script);
        fs::permissions(folder.path() / "bin" / program, fs::perms::owner_all);
        environment["PATH"] = (folder.path() / "bin").string() + ":" + environment["PATH"];
    }
    xcb_atom_t atom(const std::string& name) const {
        const auto cookie =
            xcb_intern_atom(injector.connection(), 0, static_cast<std::uint16_t>(name.size()), name.data());
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(injector.connection(), cookie, nullptr), std::free);
        return reply->atom;
    }
    void setGnomeWallpaper(const fs::path& file) {
        environment["XDG_CURRENT_DESKTOP"] = "ubuntu:GNOME";
        putInPath("gsettings", "echo \"$2 picture-options 'zoom'\"\necho \"$2 picture-uri 'file://" +
                                   file.string() + "'\"\n");
    }

    const VirtualDesktop desktop;
    const XInjector injector{desktop.displayName()};
    const TemporaryFolder folder;
    Environment environment;
};

TEST_F(DesktopCover, LiesBehindAllWindowsAndGoesWithTheRecording) {
    const TestWindow window(injector.connection(), {.rect = {100, 100, 100, 100}, .rgb = green});
    const BgraImage last = recorded();
    EXPECT_TRUE(isNearly(colorAt(last, 20, 20), plainGrey));
    EXPECT_TRUE(isNearly(colorAt(last, 150, 150), green));
    EXPECT_EQ(screenColorAt(injector, 20, 20), 0x000000U) << "the cover has stayed";
}

TEST_F(DesktopCover, ShowsGnomesWallpaperStretched) {
    setGnomeWallpaper(picture("At sea.png", red, blue));
    const BgraImage last = recorded();
    for (const int y : {2, 240, 477}) {
        EXPECT_TRUE(isNearly(colorAt(last, 2, y), red));
        EXPECT_TRUE(isNearly(colorAt(last, 300, y), red));
        EXPECT_TRUE(isNearly(colorAt(last, 340, y), blue));
        EXPECT_TRUE(isNearly(colorAt(last, 637, y), blue));
    }
}

TEST_F(DesktopCover, ShowsADrawingThatIsOneOfSeveralSizes) {
    write("small.svg", "<svg/>");
    write(
        "large.svg",
        R"(<svg xmlns="http://www.w3.org/2000/svg" width="64" height="48">)"
        R"(<rect width="32" height="48" fill="#c02020"/><rect x="32" width="32" height="48" fill="#2040c0"/></svg>)");
    const std::string folderName = folder.path().string();
    write("sizes.xml", "<background><static><file><size width='320' height='240'>" + folderName +
                           "/small.svg</size><size width='640' height='480'>" + folderName +
                           "/large.svg</size></file></static></background>");
    setGnomeWallpaper(folder.path() / "sizes.xml");
    const BgraImage last = recorded();
    EXPECT_TRUE(isNearly(colorAt(last, 300, 477), red));
    EXPECT_TRUE(isNearly(colorAt(last, 340, 2), blue));
}

TEST_F(DesktopCover, OfAWallpaperThatCannotBeReadIsPlainGrey) {
    write("slides.xml", "<background><starttime/></background>");
    setGnomeWallpaper(folder.path() / "slides.xml");
    const BgraImage last = recorded();
    EXPECT_TRUE(isNearly(colorAt(last, 20, 20), plainGrey));
    EXPECT_TRUE(isNearly(colorAt(last, 600, 400), plainGrey));
}

TEST_F(DesktopCover, WaitsForTheDesktopsSettingsForAMomentOnly) {
    environment["XDG_CURRENT_DESKTOP"] = "GNOME";
    putInPath("gsettings", "exec sleep 60\n");
    EXPECT_TRUE(isNearly(colorAt(recorded(), 20, 20), plainGrey));
}

TEST_F(DesktopCover, ShowsPlasmasWallpaperOfEachScreen) {
    splitScreen(desktop);
    environment["XDG_CURRENT_DESKTOP"] = "KDE";
    picture("Next/contents/images/20x20.png", green, green, {20, 20});
    picture("Next/contents/images/400x200.png", red, blue, {400, 200});
    const std::string left = "file://" + (folder.path() / "Next/").string();
    const std::string right = "file://" + picture("right.png", blue, green).string();
    const auto containment = [](const std::string& number, const std::string& image) {
        const std::string group = "[Containments][" + number + "]";
        return group + "\nlastScreen=" + number + "\nwallpaperplugin=org.kde.image\n\n" + group +
               "[Wallpaper][org.kde.image][General]\nImage=" + image + "\n\n";
    };
    write("plasma-org.kde.plasma.desktop-appletsrc", containment("0", left) + containment("1", right));
    const BgraImage onTheLeft = recorded("0");
    EXPECT_TRUE(isNearly(colorAt(onTheLeft, 20, 240), red));
    EXPECT_TRUE(isNearly(colorAt(onTheLeft, 300, 240), blue));
    const BgraImage onTheRight = recorded("1");
    EXPECT_TRUE(isNearly(colorAt(onTheRight, 20, 240), blue));
    EXPECT_TRUE(isNearly(colorAt(onTheRight, 300, 240), green));
}

TEST_F(DesktopCover, ShowsXfcesWallpaper) {
    environment["XDG_CURRENT_DESKTOP"] = "XFCE";
    const std::string file = picture("sea.png", blue, red).string();
    write("xfce4/xfconf/xfce-perchannel-xml/xfce4-desktop.xml",
          "<channel name=\"xfce4-desktop\"><property name=\"backdrop\"><property name=\"screen0\">"
          "<property name=\"monitorscreen\"><property name=\"workspace0\">"
          "<property name=\"last-image\" type=\"string\" value=\"" +
              file + "\"/></property></property></property></property></channel>");
    const BgraImage last = recorded();
    EXPECT_TRUE(isNearly(colorAt(last, 20, 20), blue));
    EXPECT_TRUE(isNearly(colorAt(last, 620, 460), red));
}

TEST_F(DesktopCover, ShowsWhatLiesOnTheRootWindowOfOtherDesktops) {
    xcb_connection_t* const connection = injector.connection();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const xcb_pixmap_t tile = xcb_generate_id(connection);
    xcb_create_pixmap(connection, 24, tile, root, 400, 480);
    const xcb_gcontext_t painting = xcb_generate_id(connection);
    xcb_create_gc(connection, painting, tile, 0, nullptr);
    for (const auto& [color, x] : {std::pair{red, 0}, std::pair{blue, 200}}) {
        const xcb_rectangle_t half{static_cast<std::int16_t>(x), 0, 200, 480};
        xcb_change_gc(connection, painting, XCB_GC_FOREGROUND, &color);
        xcb_poly_fill_rectangle(connection, tile, painting, 1, &half);
    }
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, root, atom("_XROOTPMAP_ID"), XCB_ATOM_PIXMAP, 32,
                        1, &tile);
    synchronize(connection);
    const BgraImage last = recorded();
    EXPECT_TRUE(isNearly(colorAt(last, 100, 240), red));
    EXPECT_TRUE(isNearly(colorAt(last, 300, 240), blue));
    EXPECT_TRUE(isNearly(colorAt(last, 500, 240), red));
    EXPECT_TRUE(isNearly(colorAt(last, 630, 240), blue));
}

class DesktopCoverUnderOpenbox : public DesktopCover {
  protected:
    DesktopCoverUnderOpenbox() : DesktopCover(WindowManager::Openbox) {}
};

TEST_F(DesktopCoverUnderOpenbox, LiesOverTheWindowThatHoldsTheIcons) {
    xcb_connection_t* const connection = injector.connection();
    TestWindow icons(connection, {.rect = {0, 0, 640, 480},
                                  .rgb = green,
                                  .kind = WindowKind::Managed,
                                  .title = "icons",
                                  .isMapped = false});
    const xcb_atom_t type = atom("_NET_WM_WINDOW_TYPE_DESKTOP");
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, icons.id(), atom("_NET_WM_WINDOW_TYPE"),
                        XCB_ATOM_ATOM, 32, 1, &type);
    icons.map();
    ASSERT_TRUE(waitUntil([&] { return screenColorAt(injector, 20, 20) == green; }));
    const TestWindow window(
        connection,
        {.rect = {100, 100, 100, 100}, .rgb = red, .kind = WindowKind::Managed, .title = "window"});
    setGnomeWallpaper(picture("sea.png", blue, blue));
    const BgraImage last = recorded();
    EXPECT_TRUE(isNearly(colorAt(last, 20, 20), blue));
    EXPECT_TRUE(isNearly(colorAt(last, 630, 470), blue));
    int redPixels = 0;  // wherever the window manager has put the window
    for (int y = 0; y < last.height(); ++y) {
        for (int x = 0; x < last.width(); ++x)
            redPixels += isNearly(colorAt(last, x, y), red) ? 1 : 0;
    }
    EXPECT_GT(redPixels, 90 * 90);
    EXPECT_TRUE(waitUntil([&] { return screenColorAt(injector, 20, 20) == green; })) << "the icons are back";
}

}  // namespace
}  // namespace tessaloom::test
