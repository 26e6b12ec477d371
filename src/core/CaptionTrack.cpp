// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CaptionTrack.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace tessaloom {
namespace {

constexpr double matchSlack = 0.000001;
constexpr double fadeSeconds = 0.12;

// Written so that a time that is no number counts as out of order.
bool inAscendingOrder(const std::vector<Caption>& lines) {
    return std::ranges::adjacent_find(lines, [](const Caption& a, const Caption& b) {
               return !(a.start <= b.start && a.end <= b.end);
           }) == lines.end();
}

}  // namespace

CaptionTrack::CaptionTrack(std::vector<Caption> lines)
    : lines_(std::move(lines)), ascending_(inAscendingOrder(lines_)) {}

const Caption* CaptionTrack::lineInForce(double time) const {
    const auto hasBegun = [time](const Caption& line) { return line.start <= time + matchSlack; };
    const auto lasts = [time](const Caption& line) { return time <= line.end + matchSlack; };
    if (ascending_) {
        const auto next = std::partition_point(lines_.begin(), lines_.end(), hasBegun);
        if (next == lines_.begin() || !lasts(*std::prev(next))) return nullptr;
        return &*std::prev(next);
    }
    const auto line = std::find_if(lines_.rbegin(), lines_.rend(),
                                   [&](const Caption& each) { return hasBegun(each) && lasts(each); });
    return line == lines_.rend() ? nullptr : &*line;
}

std::optional<CaptionChip> CaptionTrack::chip(double time) const {
    const Caption* line = lineInForce(time);
    if (line == nullptr) return std::nullopt;
    const double fadeIn = std::clamp((time - line->start) / fadeSeconds, 0.0, 1.0);
    const double fadeOut = std::clamp((line->end - time) / fadeSeconds, 0.0, 1.0);
    CaptionChip chip;
    chip.text = line->text;
    chip.alpha = static_cast<float>(std::min(fadeIn, fadeOut));
    chip.activeWord = line->activeWord(time);
    return chip;
}

std::vector<std::string_view> CaptionTrack::uniqueTexts() const {
    std::vector<std::string_view> texts;
    for (const Caption& line : lines_)
        texts.emplace_back(line.text);
    std::ranges::sort(texts);
    const auto repeated = std::ranges::unique(texts);
    texts.erase(repeated.begin(), repeated.end());
    return texts;
}

}  // namespace tessaloom
