// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace tessaloom {

/// A file that comes with the program: from share/tessaloom beside an installed program's folder, else from
/// the source tree it was built from. Nothing when there is none of this name. Callable from any thread.
std::optional<std::filesystem::path> resource(std::string_view name);

}  // namespace tessaloom
