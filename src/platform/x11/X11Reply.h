// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <memory>

namespace tessaloom {

struct FreeDelete {
    void operator()(void* memory) const { std::free(memory); }  // NOLINT(cppcoreguidelines-owning-memory)
};

/// What XCB hands out from malloc: replies, errors and events.
template <typename Reply>
using X11Reply = std::unique_ptr<Reply, FreeDelete>;

}  // namespace tessaloom
