// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AtomicFile.h"

#include <fcntl.h>

#include <system_error>

#include "core/FileDescriptor.h"
#include "core/Uuid.h"

namespace tessaloom {
namespace {

// A name beside the target that nobody else uses; deleting it after the rename finds nothing.
class TemporaryName {
  public:
    explicit TemporaryName(const std::filesystem::path& target)
        : path_(target.parent_path() /
                ("." + target.filename().string() + "." + Uuid::random().text() + ".partial")) {}
    TemporaryName(const TemporaryName&) = delete;
    TemporaryName& operator=(const TemporaryName&) = delete;
    ~TemporaryName() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

std::filesystem::path folderOf(const std::filesystem::path& path) {
    return path.has_parent_path() ? path.parent_path() : ".";
}

}  // namespace

void replaceFile(const std::filesystem::path& path, std::string_view content) {
    const TemporaryName temporary(path);
    auto file = FileDescriptor::open(temporary.path(), O_WRONLY | O_CREAT | O_EXCL);
    file.writeAll(content);
    file.sync();
    std::filesystem::rename(temporary.path(), path);
    FileDescriptor::open(folderOf(path), O_RDONLY | O_DIRECTORY).sync();
}

void writeNewFile(const std::filesystem::path& path, std::string_view content) {
    FileDescriptor::open(path, O_WRONLY | O_CREAT | O_EXCL).writeAll(content);
}

std::string readFile(const std::filesystem::path& path) {
    // A pipe in a file's place must not make the program wait for somebody to write into it.
    return FileDescriptor::open(path, O_RDONLY | O_NONBLOCK).readAll();
}

}  // namespace tessaloom
