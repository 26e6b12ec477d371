// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tessaloom {

/// What a desktop's menu calls an application.
struct DesktopEntry {
    std::string id;  ///< the file's name without ".desktop", folders turned into dashes
    std::string name;
    std::string windowClass;  ///< StartupWMClass; empty when the file doesn't say
};

/// The entries of these folders and those inside them, in order; of several with one id the first counts.
/// Unreadable files are left out.
std::vector<DesktopEntry> readDesktopEntries(const std::vector<std::filesystem::path>& folders);

/// The "applications" folders of this session, the user's own first.
std::vector<std::filesystem::path> desktopEntryFolders();

/// The one whose windows have this class: by what the entry says itself, else by its id or the last part of
/// it, without case. Null when there is none.
const DesktopEntry* entryOfWindowClass(const std::vector<DesktopEntry>& entries,
                                       const std::string& windowClass);

}  // namespace tessaloom
