// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/AttemptMarker.h"

#include <fcntl.h>

#include <system_error>

#include "core/FileDescriptor.h"

namespace tessaloom {

std::optional<AttemptMarker> AttemptMarker::place(const std::filesystem::path& file) {
    try {
        std::filesystem::create_directories(file.parent_path());
        FileDescriptor::open(file, O_WRONLY | O_CREAT | O_EXCL).sync();
        // A driver may take the whole machine down: the file's name must be on the disk too.
        FileDescriptor::open(file.parent_path(), O_RDONLY | O_DIRECTORY).sync();
    } catch (const std::system_error&) {
        return std::nullopt;
    }
    return AttemptMarker(file);
}

AttemptMarker::~AttemptMarker() {
    if (file_.empty()) return;
    std::error_code ignored;
    std::filesystem::remove(file_, ignored);
}

}  // namespace tessaloom
