// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

namespace tessaloom::test {

/// Counts the heap allocations that this thread makes through operator new since the counter was made. A test
/// program that uses it has its operator new replaced.
class AllocationCounter {
  public:
    AllocationCounter();
    std::size_t count() const;

  private:
    std::size_t before_;
};

}  // namespace tessaloom::test
