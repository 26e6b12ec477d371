// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileDescriptor.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace tessaloom {
namespace {

[[noreturn]] void fail(const std::string& deed, const std::filesystem::path& path) {
    throw std::system_error(errno, std::generic_category(), deed + " \"" + path.string() + "\"");
}

}  // namespace

FileDescriptor FileDescriptor::open(const std::filesystem::path& path, int flags, unsigned mode) {
    const int number = ::open(path.c_str(), flags | O_CLOEXEC, mode);
    if (number < 0) fail("Can't open", path);
    return {number, path};
}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    std::swap(path_, other.path_);
    return *this;
}

FileDescriptor::~FileDescriptor() {
    if (number_ >= 0) ::close(number_);
}

void FileDescriptor::writeAll(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(number_, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) fail("Can't write", path_);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

std::string FileDescriptor::readAll() {
    requireFile();
    std::string content;
    std::array<char, 65536> block{};
    for (;;) {
        const ssize_t count = ::read(number_, block.data(), block.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail("Can't read", path_);
        if (count == 0) return content;
        content.append(block.data(), static_cast<std::size_t>(count));
    }
}

void FileDescriptor::requireFile() const {
    struct stat status {};
    if (::fstat(number_, &status) != 0) fail("Can't read", path_);
    if (S_ISREG(status.st_mode)) return;
    errno = S_ISDIR(status.st_mode) ? EISDIR : ESPIPE;
    fail("Can't read", path_);
}

void FileDescriptor::sync() {
    if (::fsync(number_) != 0) fail("Can't write", path_);
}

void FileDescriptor::syncData() {
    if (::fdatasync(number_) != 0) fail("Can't write", path_);
}

void FileDescriptor::truncate() {
    if (::ftruncate(number_, 0) != 0) fail("Can't write", path_);
}

bool FileDescriptor::tryLock() {
    if (::flock(number_, LOCK_EX | LOCK_NB) == 0) return true;
    if (errno != EWOULDBLOCK) fail("Can't lock", path_);
    return false;
}

}  // namespace tessaloom
