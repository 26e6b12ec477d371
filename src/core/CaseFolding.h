// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace tessaloom {

/// The text with each letter in one case, in any script and whatever the user's locale: two UTF-8 texts that
/// differ only in case have the same folded form. What is no UTF-8 stays as it is.
std::string caseFolded(std::string_view text);

}  // namespace tessaloom
