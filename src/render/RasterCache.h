// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tessaloom {

/// Keeps what was rastered under a key. First in, first out: using an entry does not make it stay longer.
template <class Raster>
class RasterCache {
  public:
    static constexpr std::size_t capacity = 256;

    /// The raster of `key`, made by `make(key)` (an optional) when it is not there. Null when making failed,
    /// which is not remembered. Valid until the next call.
    template <class Make>
    const Raster* get(std::string_view key, Make make) {
        if (const auto kept = rasters_.find(key); kept != rasters_.end()) return &kept->second;
        std::optional<Raster> made = make(key);
        if (!made) return nullptr;
        const auto added = rasters_.emplace(key, std::move(*made)).first;
        order_.emplace_back(key);
        if (order_.size() > capacity) {
            rasters_.erase(order_.front());
            order_.pop_front();
        }
        return &added->second;
    }

  private:
    std::map<std::string, Raster, std::less<>> rasters_;
    std::deque<std::string> order_;
};

}  // namespace tessaloom
