// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CaptionWords.h"

#include <algorithm>

namespace tessaloom {
namespace {

// Takes the first word off `rest`; empty when there is none.
std::string_view takeWord(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    const std::string_view word = rest.substr(0, rest.find(' '));
    rest.remove_prefix(word.size());
    return word;
}

}  // namespace

std::vector<std::string_view> captionWords(std::string_view text) {
    std::vector<std::string_view> words;
    for (std::string_view word = takeWord(text); !word.empty(); word = takeWord(text))
        words.push_back(word);
    return words;
}

std::optional<std::string_view> captionWord(std::string_view text, int index) {
    if (index < 0) return std::nullopt;
    std::string_view word = takeWord(text);
    for (; index > 0 && !word.empty(); --index)
        word = takeWord(text);
    if (word.empty()) return std::nullopt;
    return word;
}

}  // namespace tessaloom
