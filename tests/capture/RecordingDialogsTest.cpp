// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RecordingDialogs.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

TEST(RecordingDialogs, AFailedStartGivesItsReason) {
    EXPECT_EQ(startFailedDialog("Because.", true),
              (DialogText{"Couldn't start recording", "Because.", "OK", ""}));
}

TEST(RecordingDialogs, AFailedStartWithoutPermissionLeadsToIt) {
    EXPECT_EQ(startFailedDialog("Because.", false),
              (DialogText{"Couldn't start recording",
                          "Tessaloom needs permission to record your screen.\n\nBecause.",
                          "Set Up Permissions", "Cancel"}));
}

TEST(RecordingDialogs, WithoutAMicrophoneItsUserChooses) {
    EXPECT_EQ(
        microphoneDialog("Because."),
        (DialogText{"Microphone unavailable", "This recording will have no microphone audio.\n\nBecause.",
                    "Record without mic", "Cancel"}));
}

TEST(RecordingDialogs, WithoutACameraItGoesOnEitherWay) {
    EXPECT_EQ(cameraDialog("Because."),
              (DialogText{"Recording without the camera", "Because.", "Continue", "Camera Settings"}));
}

}  // namespace
}  // namespace tessaloom
