// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>

namespace tessaloom {

/// A stored document is no JSON object. `what()` is one plain sentence.
class DecodeError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace tessaloom
