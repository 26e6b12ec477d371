// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "shell/CommandError.h"

namespace tessaloom::test {

/// What `parse` says is wrong with a command line; empty when it says nothing.
template <typename Parse>
std::string usageErrorOf(Parse parse) {
    try {
        static_cast<void>(parse());
    } catch (const UsageError& error) {
        return error.what();
    }
    return {};
}

}  // namespace tessaloom::test
