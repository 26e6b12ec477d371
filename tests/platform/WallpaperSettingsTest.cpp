// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "platform/desktop/GnomeBackgroundFile.h"
#include "platform/desktop/GnomeWallpaper.h"
#include "platform/desktop/PlasmaWallpaper.h"
#include "platform/desktop/XfceWallpaper.h"

namespace tessaloom {
namespace {

using Path = std::optional<std::filesystem::path>;

std::string gnome(const std::string& options, const std::string& scheme,
                  const std::string& dark = "'file:///usr/share/dark.jpg'") {
    return "org.gnome.desktop.background color-shading-type 'solid'\n"
           "org.gnome.desktop.background picture-options '" +
           options +
           "'\n"
           "org.gnome.desktop.background picture-uri 'file:///home/ann/At%20sea.jpg'\n"
           "org.gnome.desktop.background picture-uri-dark " +
           dark + "\norg.gnome.desktop.interface color-scheme '" + scheme + "'\n";
}

TEST(GnomeWallpaper, IsTheFileOfTheUsersTaste) {
    EXPECT_EQ(gnomeWallpaper(gnome("zoom", "default")), Path("/home/ann/At sea.jpg"));
    EXPECT_EQ(gnomeWallpaper(gnome("zoom", "prefer-dark")), Path("/usr/share/dark.jpg"));
    EXPECT_EQ(gnomeWallpaper(gnome("stretched", "prefer-dark", "''")), Path("/home/ann/At sea.jpg"));
}

TEST(GnomeWallpaper, MayHaveQuotesInItsName) {
    EXPECT_EQ(gnomeWallpaper(gnome("zoom", "prefer-dark", R"("file:///home/ann/Ann's.jpg")")),
              Path("/home/ann/Ann's.jpg"));
    EXPECT_EQ(gnomeWallpaper(gnome("zoom", "prefer-dark", R"('file:///home/ann/\'"\\.jpg')")),
              Path(R"(/home/ann/'"\.jpg)"));
}

TEST(GnomeWallpaper, IsNoneWhereAColourIsShownOrNothingIsKnown) {
    EXPECT_FALSE(gnomeWallpaper(gnome("none", "default")));
    EXPECT_FALSE(gnomeWallpaper(""));
    EXPECT_FALSE(gnomeWallpaper("org.gnome.desktop.background picture-uri"));
    EXPECT_FALSE(gnomeWallpaper("org.gnome.desktop.background picture-uri '"));
    EXPECT_FALSE(gnomeWallpaper("org.gnome.desktop.background picture-uri 'https://example.org/a.jpg'\n"));
}

constexpr const char* sizes = R"(<background><static><duration>8640000.0</duration><file>
  <size width="1280" height="800">/a/1280x800.svg</size>
  <size width="2560" height="1600">/a/2560x1600.svg</size>
  <size width="1920" height="1200">/a/1920x1200.svg</size>
</file></static></background>)";

TEST(GnomeBackgroundFile, HasAPictureThatCoversTheScreen) {
    EXPECT_EQ(pictureOfGnomeBackground(sizes, 1920, 1080), Path("/a/1920x1200.svg"));
    EXPECT_EQ(pictureOfGnomeBackground(sizes, 640, 480), Path("/a/1280x800.svg"));
    EXPECT_EQ(pictureOfGnomeBackground(sizes, 3840, 2160), Path("/a/2560x1600.svg"));
}

TEST(GnomeBackgroundFile, OfPicturesThatTakeTurnsOrDamagedHasNone) {
    const QByteArray still = "<static><file><size width='9' height='9'>/a.jpg</size></file></static>";
    EXPECT_TRUE(pictureOfGnomeBackground("<background>" + still + "</background>", 9, 9));
    EXPECT_FALSE(pictureOfGnomeBackground("<background>" + still + still + "</background>", 9, 9));
    EXPECT_FALSE(pictureOfGnomeBackground("<background>" + still, 9, 9));
    EXPECT_FALSE(pictureOfGnomeBackground("", 9, 9));
}

constexpr const char* plasma = R"([ActionPlugins][0]
RightButton;NoModifier=org.kde.contextmenu

[Containments][1]
activityId=8a3c
formfactor=0
lastScreen=0
plugin=org.kde.plasma.folder
wallpaperplugin=org.kde.image

[Containments][1][Wallpaper][org.kde.image][General]
Image=file:///usr/share/wallpapers/Next/
SlidePaths=/usr/share/wallpapers/

[Containments][1][Wallpaper][org.kde.slideshow][General]
Image=file:///not/this.jpg

[Containments][2]
lastScreen=0
plugin=org.kde.panel
wallpaperplugin=org.kde.image

[Containments][2][Applets][5][Wallpaper][org.kde.image][General]
Image=file:///not/this/either.jpg

[Containments][7]
lastScreen=1
wallpaperplugin=org.kde.image

[Containments][7][Wallpaper][org.kde.image][General]
Image=/home/ann/At sea.jpg

[Containments][8]
lastScreen=2
wallpaperplugin=org.kde.color

[Containments][8][Wallpaper][org.kde.image][General]
Image=/home/ann/earlier.jpg
)";

TEST(PlasmaWallpaper, IsTheScreensOwn) {
    EXPECT_EQ(plasmaWallpaper(plasma, 0), Path("/usr/share/wallpapers/Next/"));
    EXPECT_EQ(plasmaWallpaper(plasma, 1), Path("/home/ann/At sea.jpg"));
}

TEST(PlasmaWallpaper, IsNoneWhereAColourIsShownOrNothingIsKnown) {
    EXPECT_FALSE(plasmaWallpaper(plasma, 2));
    EXPECT_FALSE(plasmaWallpaper(plasma, 3));
    EXPECT_FALSE(plasmaWallpaper("", 0));
    EXPECT_FALSE(plasmaWallpaper("[Containments]\n[\nlastScreen=0\n[Containments][1", 0));
}

constexpr const char* xfce = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-desktop" version="1.0">
  <property name="backdrop" type="empty">
    <property name="screen0" type="empty">
      <property name="monitorHDMI-1" type="empty">
        <property name="workspace0" type="empty">
          <property name="color-style" type="int" value="0"/>
          <property name="image-style" type="int" value="5"/>
          <property name="last-image" type="string" value="/home/ann/Sun &amp; sea.jpg"/>
        </property>
        <property name="workspace1" type="empty">
          <property name="last-image" type="string" value="/home/ann/other.jpg"/>
        </property>
      </property>
      <property name="monitorVGA-1" type="empty">
        <property name="workspace0" type="empty">
          <property name="image-style" type="int" value="0"/>
          <property name="last-image" type="string" value="/home/ann/earlier.jpg"/>
        </property>
      </property>
    </property>
  </property>
</channel>
)";

TEST(XfceWallpaper, IsTheMonitorsOwn) {
    EXPECT_EQ(xfceWallpaper(xfce, "HDMI-1"), Path("/home/ann/Sun & sea.jpg"));
}

TEST(XfceWallpaper, IsNoneWhereAColourIsShownOrNothingIsKnown) {
    EXPECT_FALSE(xfceWallpaper(xfce, "VGA-1"));
    EXPECT_FALSE(xfceWallpaper(xfce, "DP-1"));
    EXPECT_FALSE(xfceWallpaper("", "HDMI-1"));
    EXPECT_FALSE(xfceWallpaper("<channel><property></channel>", "HDMI-1"));
}

}  // namespace
}  // namespace tessaloom
