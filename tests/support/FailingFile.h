// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace tessaloom::test {

/// A file whose beginning can be read, while the system fails with EIO behind it, as a dying disk does. Only
/// libav can open it, by a name that isn't a path.
class FailingFile {
  public:
    /// Whole pages count, so a little more than `readable` bytes of `file` can be read. Cuts `file` there.
    FailingFile(const std::filesystem::path& file, std::uintmax_t readable);
    ~FailingFile();
    FailingFile(const FailingFile&) = delete;
    FailingFile& operator=(const FailingFile&) = delete;

    const std::filesystem::path& name() const { return name_; }

  private:
    std::size_t size_;
    void* memory_ = nullptr;
    std::filesystem::path name_;
};

}  // namespace tessaloom::test
