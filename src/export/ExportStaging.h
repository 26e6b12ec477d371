// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>

#include "core/FileDescriptor.h"

namespace tessaloom {

/// Keeps an export out of sight until it is complete: it is written in a hidden folder beside its destination
/// and takes the destination's place in one step. A staging that ends without a commit leaves nothing behind
/// and the old file as it was; what exports that were killed have left there is cleared away by the next one.
///
/// Where no folder may be made the export is written to the destination itself, whose old file is gone from
/// the start.
class ExportStaging {
  public:
    /// Throws std::system_error when a folder can't be made for another reason, such as a full disk; the old
    /// file is as it was then.
    explicit ExportStaging(std::filesystem::path destination);
    ~ExportStaging();
    ExportStaging(const ExportStaging&) = delete;
    ExportStaging& operator=(const ExportStaging&) = delete;

    /// Where to write.
    const std::filesystem::path& url() const { return url_; }

    /// Throws std::system_error; then, too, nothing is left beside the destination.
    void commit();

    /// Gives up what was written. Does nothing after a commit.
    void discard() noexcept;

  private:
    std::filesystem::path destination_;
    std::optional<std::filesystem::path> folder_;
    FileDescriptor lock_;  ///< on the folder: its maker lives
    std::filesystem::path url_;
    bool settled_ = false;
};

}  // namespace tessaloom
