// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/TakeBundle.h"

namespace tessaloom {

/// The recordings in a folder.
class RecordingLibrary {
  public:
    explicit RecordingLibrary(std::filesystem::path folder) : folder_(std::move(folder)) {}

    const std::filesystem::path& folder() const { return folder_; }

    /// Newest first, at most `limit`. A folder that can't be listed holds none.
    std::vector<TakeBundle> recentBundles(std::size_t limit) const;

    /// The bundle that a user names: by a path, or by a recording's name with or without ".takes". Nothing
    /// when there is no such folder.
    std::optional<TakeBundle> find(const std::string& pathOrName) const;

  private:
    std::filesystem::path folder_;
};

/// A folder counts as a bundle when it holds at least one of the files that make one.
bool isBundle(const std::filesystem::path& folder);

}  // namespace tessaloom
