// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t allocations = 0;

}  // namespace

void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace tessaloom::test {

AllocationCounter::AllocationCounter() : before_(allocations) {}

std::size_t AllocationCounter::count() const {
    return allocations - before_;
}

}  // namespace tessaloom::test
