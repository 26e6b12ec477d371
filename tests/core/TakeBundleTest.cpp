// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/TakeBundle.h"

#include <gtest/gtest.h>

#include <fstream>
#include <system_error>

#include "core/DecodeError.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

TEST(TakeBundle, IsNamedAfterItsLocalStart) {
    using namespace std::chrono;
    const auto start = local_days(2026y / November / 15) + 14h + 5min + 9s;
    EXPECT_EQ(TakeBundle::folderName(start), "Recording 2026-11-15 at 14.05.09.takes");
    EXPECT_EQ(TakeBundle::folderName(local_days(2027y / January / 2)),
              "Recording 2027-01-02 at 00.00.00.takes");
}

TEST(TakeBundle, IsWellFormedFromTheFirstMoment) {
    const test::TemporaryFolder folder;
    const TakeBundle bundle = TakeBundle::create(folder.path() / "a.takes");
    EXPECT_EQ(bundle.readEdit(), EditParams{});
    EXPECT_EQ(bundle.readLog(), EventLog{});
}

TEST(TakeBundle, IsNotMadeTwiceNorInAMissingFolder) {
    const test::TemporaryFolder folder;
    TakeBundle::create(folder.path() / "a.takes");
    EXPECT_THROW(TakeBundle::create(folder.path() / "a.takes"), std::system_error);
    EXPECT_THROW(TakeBundle::create(folder.path() / "no" / "a.takes"), std::system_error);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "no"));
}

TEST(TakeBundle, KeepsWhatIsWrittenIntoIt) {
    const test::TemporaryFolder folder;
    const TakeBundle bundle = TakeBundle::create(folder.path() / "a.takes");
    EditParams edit;
    edit.padding = 64;
    EventLog log;
    log.cursorSamples = {{1, 0.5, 0.5}};
    bundle.write(edit);
    bundle.write(log);
    EXPECT_EQ(bundle.readEdit(), edit);
    EXPECT_EQ(bundle.readLog(), log);
}

TEST(TakeBundle, TellsAMissingFileFromADamagedOne) {
    const test::TemporaryFolder folder;
    const TakeBundle bundle{folder.path()};
    EXPECT_THROW(bundle.readLog(), std::system_error);
    std::ofstream(bundle.file(TakeBundle::eventsFile)) << "{\"version\": 1";
    EXPECT_THROW(bundle.readLog(), DecodeError);
    std::filesystem::create_directory(bundle.file(TakeBundle::editFile));
    EXPECT_THROW(bundle.readEdit(), std::system_error);
}

TEST(TakeBundle, LosesItsEmptyMediaOnly) {
    const test::TemporaryFolder folder;
    const TakeBundle bundle = TakeBundle::create(folder.path() / "a.takes");
    std::ofstream(bundle.file(TakeBundle::microphoneFile)).close();
    std::ofstream(bundle.file(TakeBundle::webcamFile)) << "x";
    bundle.removeEmptyMedia();
    EXPECT_FALSE(bundle.hasMic());
    EXPECT_TRUE(bundle.hasWebcam());
    EXPECT_NO_THROW(bundle.readLog());
}

TEST(TakeBundle, OffersTheMediaWhoseFilesAreThereEvenEmpty) {
    const test::TemporaryFolder folder;
    const TakeBundle bundle{folder.path()};
    EXPECT_FALSE(bundle.hasWebcam() || bundle.hasMic() || bundle.hasEnhancedAudio() || bundle.hasMatte());
    std::ofstream(bundle.file("webcam.mov")).flush();
    EXPECT_TRUE(bundle.hasWebcam());
    EXPECT_FALSE(bundle.hasMic() || bundle.hasEnhancedAudio() || bundle.hasMatte());
    for (const char* name : {"audio.m4a", "audio-enhanced.m4a", "webcam-matte.mov"})
        std::ofstream(bundle.file(name)).flush();
    EXPECT_TRUE(bundle.hasMic() && bundle.hasEnhancedAudio() && bundle.hasMatte());
}

}  // namespace
}  // namespace tessaloom
