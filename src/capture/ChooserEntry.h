// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <vector>

#include "capture/CaptureTarget.h"
#include "capture/ShareableContent.h"

namespace tessaloom {

/// One of the things that a user can pick, and what is written below its picture.
struct ChooserEntry {
    ContentFilter filter;
    QString title;
    QString detail;
};

/// The displays, then the windows from the topmost down.
std::vector<ChooserEntry> chooserEntries(const ShareableContent& content);

}  // namespace tessaloom
