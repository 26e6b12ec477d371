// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Valid JSON that the parser refuses as a whole, made such that only the bad value is lost.
namespace tessaloom {

/// With null for each number whose exponent is too great for a double.
std::string withHugeNumbersAsNull(std::string_view json);

/// With U+FFFD for each escaped half of a surrogate pair that misses the other half: it stands for no
/// character, and no UTF-8 could store it. Nothing when there is none.
std::optional<std::string> withLoneSurrogatesReplaced(std::string_view json);

}  // namespace tessaloom
