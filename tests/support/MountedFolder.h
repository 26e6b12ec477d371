// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace tessaloom::test {

/// A file system in memory over a folder, which it hides until its scope ends.
class MountedFolder {
  public:
    /// `size` as the tmpfs option ("64k"). Null where this process isn't allowed to mount.
    static std::unique_ptr<MountedFolder> over(const std::filesystem::path& folder, const std::string& size);
    ~MountedFolder();
    MountedFolder(const MountedFolder&) = delete;
    MountedFolder& operator=(const MountedFolder&) = delete;

    /// Throws std::system_error.
    void makeReadOnly();

  private:
    explicit MountedFolder(std::filesystem::path folder) : folder_(std::move(folder)) {}

    std::filesystem::path folder_;
};

}  // namespace tessaloom::test
