// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/OutputFile.h"

#include <system_error>

#include "shell/CommandError.h"

namespace tessaloom {
namespace {

bool isFolder(const std::filesystem::path& path) {
    std::error_code unreadable;
    return std::filesystem::is_directory(path, unreadable);
}

}  // namespace

std::filesystem::path outputFile(const std::filesystem::path& path) {
    auto file = std::filesystem::absolute(path);
    if (!isFolder(file.parent_path())) {
        throw CommandError("There is no folder \"" + file.parent_path().string() +
                           "\". Make it first, or choose another with -o.");
    }
    if (isFolder(file)) throw CommandError("\"" + file.string() + "\" is a folder. Name a file with -o.");
    return file;
}

}  // namespace tessaloom
