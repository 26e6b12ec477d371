// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

namespace tessaloom {

/// Tells what a device delivered and nobody took, by the clock of the node that sets the graph's pace.
class LostBuffers {
  public:
    struct Buffer {
        std::uint32_t driver = 0;  ///< whose clock it is
        double cycleStart = 0;     ///< seconds of that clock
        double length = 0;         ///< seconds
    };

    /// What comes next follows nothing.
    void restart() { last_.reset(); }

    /// How many are missing between the last buffer and this one.
    int before(const Buffer& buffer) {
        const auto last = std::exchange(last_, buffer);
        if (!last || last->driver != buffer.driver || buffer.length <= 0) return 0;
        // When cycles become shorter or longer, some clocks go on by the last one and some by the next.
        const double expected = std::max(last->length, buffer.length);
        const double missing = buffer.cycleStart - last->cycleStart - expected;
        return std::max(0, static_cast<int>(std::lround(missing / buffer.length)));
    }

  private:
    std::optional<Buffer> last_;
};

}  // namespace tessaloom
