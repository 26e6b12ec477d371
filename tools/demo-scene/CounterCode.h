// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>

/// How the demonstration scene writes the number of each paint on the screen, so that whoever sees a picture
/// of it knows which paint it shows: a row of light and dark cells. A light and a dark marker come first,
/// then 13 bits, the highest first, then a cell that makes the number of light cells odd.
namespace tessaloom::demo::CounterCode {

constexpr int cellCount = 16;
constexpr int cellPixels = 12;

/// Counters wrap around here.
constexpr unsigned counterLimit = 1U << 13U;

/// True for a light cell.
using Cells = std::array<bool, cellCount>;

Cells encode(unsigned counter);

/// Nothing when the markers or the parity are wrong.
std::optional<unsigned> decode(const Cells& cells);

}  // namespace tessaloom::demo::CounterCode
