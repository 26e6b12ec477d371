// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <utility>

namespace tessaloom {

/// A file that stands while something is tried that may take the process down with it, as a driver may. Who
/// finds it standing knows that the attempt never ended, or goes on in another process.
class AttemptMarker {
  public:
    /// On the disk when it returns; the folder is made where it is missing. Nothing when the file stands
    /// already, or can't be made.
    static std::optional<AttemptMarker> place(const std::filesystem::path& file);

    AttemptMarker(AttemptMarker&& other) noexcept : file_(std::exchange(other.file_, {})) {}
    AttemptMarker& operator=(AttemptMarker&&) = delete;
    /// Removes the file: the attempt has ended, well or badly.
    ~AttemptMarker();

  private:
    explicit AttemptMarker(std::filesystem::path file) : file_(std::move(file)) {}

    std::filesystem::path file_;
};

}  // namespace tessaloom
