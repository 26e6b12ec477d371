// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace tessaloom {

/// An open file of the operating system, closed with its owner. Operations throw std::system_error with a
/// sentence that names the file.
class FileDescriptor {
  public:
    /// As open(2), never inherited by programs we start.
    static FileDescriptor open(const std::filesystem::path& path, int flags, unsigned mode = 0644);

    FileDescriptor() = default;
    FileDescriptor(FileDescriptor&& other) noexcept
        : number_(std::exchange(other.number_, -1)), path_(std::move(other.path_)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor();

    int number() const { return number_; }

    /// One write where the system allows it, repeated only for what it left over.
    void writeAll(std::string_view bytes);
    /// Only of a regular file: it throws for pipes, devices and folders.
    std::string readAll();
    /// Returns when the content is on the disk: with all the file's attributes, or with those needed to read
    /// it back.
    void sync();
    void syncData();
    /// Empties the file.
    void truncate();
    /// Takes the exclusive lock of the file; false when another holder has it.
    bool tryLock();

  private:
    FileDescriptor(int number, std::filesystem::path path) : number_(number), path_(std::move(path)) {}

    void requireFile() const;

    int number_ = -1;
    std::filesystem::path path_;
};

}  // namespace tessaloom
