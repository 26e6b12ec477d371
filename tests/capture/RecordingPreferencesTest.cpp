// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RecordingPreferences.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

template <typename... Options>
RecordingPreferences preferencesIn(const std::string& settings, const Options&... options) {
    const test::TemporaryFolder folder;
    const auto file = folder.path() / "settings.ini";
    std::ofstream(file) << "[General]\n" << settings;
    return RecordingPreferences::stored(Defaults(file), options...);
}

TEST(RecordingPreferences, NothingStoredRecordsSoundAndNoCamera) {
    const auto preferences = preferencesIn("");
    EXPECT_TRUE(preferences.captureMicrophone);
    EXPECT_TRUE(preferences.captureSystemAudio);
    EXPECT_FALSE(preferences.captureWebcam);
    EXPECT_EQ(preferences.countdownSeconds, 3);
    EXPECT_EQ(preferences.micDeviceID + preferences.webcamDeviceID, "");
    EXPECT_EQ(preferences.camera.shape, WebcamConfig::Shape::circle);
    EXPECT_EQ(preferences.camera.relativeSize, 0.2);
    EXPECT_FALSE(preferences.camera.mirrored);
}

TEST(RecordingPreferences, WhatIsStoredHolds) {
    const auto preferences = preferencesIn(
        "captureMic=false\ncaptureSystemAudio=false\ncaptureWebcam=true\ncountdownSeconds=0\n"
        "micDeviceID=mic.usb\nwebcamDeviceID=cam.usb\nwebcamShape=rectangle\nwebcamSize=0.35\n"
        "webcamMirror=true\n");
    EXPECT_FALSE(preferences.captureMicrophone);
    EXPECT_FALSE(preferences.captureSystemAudio);
    EXPECT_TRUE(preferences.captureWebcam);
    EXPECT_EQ(preferences.countdownSeconds, 0);
    EXPECT_EQ(preferences.micDeviceID, "mic.usb");
    EXPECT_EQ(preferences.webcamDeviceID, "cam.usb");
    EXPECT_EQ(preferences.camera.shape, WebcamConfig::Shape::rectangle);
    EXPECT_EQ(preferences.camera.relativeSize, 0.35);
    EXPECT_TRUE(preferences.camera.mirrored);
}

TEST(RecordingPreferences, OptionsStandOnlyWhereNothingIsStored) {
    const RecordingOptions options{
        .captureMicrophone = false, .captureWebcam = true, .captureSystemAudio = false};
    const auto without = preferencesIn("", options);
    EXPECT_FALSE(without.captureMicrophone);
    EXPECT_TRUE(without.captureWebcam);
    EXPECT_FALSE(without.captureSystemAudio);
    const auto with =
        preferencesIn("captureMic=true\ncaptureWebcam=false\ncaptureSystemAudio=true\n", options);
    EXPECT_TRUE(with.captureMicrophone);
    EXPECT_FALSE(with.captureWebcam);
    EXPECT_TRUE(with.captureSystemAudio);
}

TEST(RecordingPreferences, ACameraChoiceThatMakesNoSenseIsTheUsualOne) {
    const auto preferences = preferencesIn("webcamShape=star\nwebcamSize=0\n");
    EXPECT_EQ(preferences.camera.shape, WebcamConfig::Shape::circle);
    EXPECT_EQ(preferences.camera.relativeSize, 0.2);
}

}  // namespace
}  // namespace tessaloom
