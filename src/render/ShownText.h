// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace tessaloom {

/// A caption's text (UTF-8) as it is drawn: as it is, or in capitals by Unicode's rules.
std::string shownText(std::string_view text, bool uppercase);

}  // namespace tessaloom
