// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string_view>

namespace tessaloom {

/// The double nearest to a number spelled as JSON has it: 0 for one too small for a double, nothing for one
/// too great and for what isn't a number.
std::optional<double> readJsonNumber(std::string_view spelled);

}  // namespace tessaloom
