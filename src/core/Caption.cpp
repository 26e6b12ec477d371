// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Caption.h"

#include <algorithm>
#include <iterator>

#include "core/CaptionWords.h"

namespace tessaloom {
namespace {

constexpr double matchSlack = 0.000001;

bool fallsInto(const CaptionWord& word, std::span<const TimeSegment> ranges) {
    return std::ranges::any_of(ranges, [&word](const TimeSegment& range) {
        const double upper = std::max(range.start, range.end);
        return range.start < word.end - matchSlack && word.start < upper - matchSlack;
    });
}

std::string joinedText(const std::vector<CaptionWord>& words) {
    std::string text;
    for (const CaptionWord& word : words) {
        if (&word != &words.front()) text += ' ';
        text += word.text;
    }
    return text;
}

}  // namespace

std::optional<int> Caption::activeWord(double time) const {
    const auto spoken = std::ranges::find_if(words, [time](const CaptionWord& word) {
        return word.start <= time + matchSlack && time <= word.end + matchSlack;
    });
    if (spoken != words.end()) return static_cast<int>(spoken - words.begin());
    const auto last = std::find_if(words.rbegin(), words.rend(),
                                   [time](const CaptionWord& word) { return word.end < time; });
    if (last == words.rend()) return std::nullopt;
    return static_cast<int>(words.rend() - last) - 1;
}

std::optional<std::string_view> Caption::word(int index) const {
    return captionWord(text, index);
}

Caption Caption::removing(std::span<const TimeSegment> ranges) const {
    std::vector<CaptionWord> left;
    std::ranges::copy_if(words, std::back_inserter(left),
                         [ranges](const CaptionWord& word) { return !fallsInto(word, ranges); });
    if (left.size() == words.size()) return *this;
    if (left.empty()) return {};
    return {left.front().start, left.back().end, joinedText(left), left};
}

}  // namespace tessaloom
