// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace tessaloom {

/// The name under which a process was started, without folders; empty when there is none of that number.
std::string processName(std::uint32_t process);

}  // namespace tessaloom
