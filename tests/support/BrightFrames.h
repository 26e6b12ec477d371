// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

namespace tessaloom::test {

/// Which of a movie's frames are bright at a place, given as fractions of their width and height.
std::vector<std::size_t> brightFrames(const std::filesystem::path& movie, double x = 0.9, double y = 0.8);

/// The first frame of each flash among them.
std::vector<std::size_t> flashes(const std::vector<std::size_t>& brightFrames);

}  // namespace tessaloom::test
