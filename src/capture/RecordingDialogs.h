// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tessaloom {

/// What a dialog asks or tells. Its first button is the one that goes on.
struct DialogText {
    std::string title;
    std::string text;
    std::string firstButton;
    std::string secondButton;  ///< empty: there is none

    bool operator==(const DialogText&) const = default;
};

// All give the reason in the words of the error that it is about.

/// Without the permission to record the screen that may be why; the first button then leads to giving it.
DialogText startFailedDialog(const std::string& reason, bool mayRecordScreen);
/// The second button gives the recording up.
DialogText microphoneDialog(const std::string& reason);
/// Either way the recording goes on; the second button also shows the desktop's page for cameras.
DialogText cameraDialog(const std::string& reason);

}  // namespace tessaloom
