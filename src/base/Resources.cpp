// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Resources.h"

#include <initializer_list>
#include <system_error>

namespace tessaloom {

std::optional<std::filesystem::path> resource(std::string_view name) {
    std::error_code ignored;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", ignored);
    const auto installed = program.parent_path().parent_path() / "share" / "tessaloom";
    for (const std::filesystem::path& folder : {installed, std::filesystem::path(TESSALOOM_RESOURCES)}) {
        auto file = folder / name;
        if (std::filesystem::is_regular_file(file, ignored)) return file;
    }
    return std::nullopt;
}

}  // namespace tessaloom
