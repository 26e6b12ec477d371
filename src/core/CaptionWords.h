// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace tessaloom {

// A caption's words are the pieces of its text between blanks; blanks in a row make no empty word. The
// results are views into `text`.

std::vector<std::string_view> captionWords(std::string_view text);

/// The word at `index`; allocates nothing.
std::optional<std::string_view> captionWord(std::string_view text, int index);

}  // namespace tessaloom
