// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/CounterCode.h"

#include <algorithm>

namespace tessaloom::demo::CounterCode {
namespace {

constexpr std::size_t firstBit = 2;
constexpr std::size_t parityCell = cellCount - 1;

bool oddLightCells(const Cells& cells) {
    return std::count(cells.begin(), cells.end(), true) % 2 == 1;
}

}  // namespace

Cells encode(unsigned counter) {
    Cells cells{true, false};
    for (std::size_t cell = firstBit; cell < parityCell; ++cell) {
        cells[cell] = ((counter >> (parityCell - 1 - cell)) & 1U) != 0;
    }
    cells[parityCell] = !oddLightCells(cells);
    return cells;
}

std::optional<unsigned> decode(const Cells& cells) {
    if (!cells[0] || cells[1] || !oddLightCells(cells)) return std::nullopt;
    unsigned counter = 0;
    for (std::size_t cell = firstBit; cell < parityCell; ++cell)
        counter = counter * 2 + (cells[cell] ? 1 : 0);
    return counter;
}

}  // namespace tessaloom::demo::CounterCode
