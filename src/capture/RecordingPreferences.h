// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

#include "base/Defaults.h"

namespace tessaloom {

/// The user's stored choices for a recording, as one run of it takes them.
struct RecordingPreferences {
    int countdownSeconds = 3;  ///< 0 or less: none
    std::filesystem::path libraryFolder;

    static RecordingPreferences stored(const Defaults& defaults) {
        return {defaults.integer("countdownSeconds").value_or(3), Defaults::libraryFolder()};
    }
};

}  // namespace tessaloom
