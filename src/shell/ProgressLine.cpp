// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ProgressLine.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <iostream>

namespace tessaloom {
namespace {

constexpr int barWidth = 30;
constexpr double leastFractionToJudgeBy = 0.02;
constexpr double almostDoneSeconds = 1.5;

std::string bar(double fraction) {
    const int filled = static_cast<int>(std::lround(std::clamp(fraction, 0.0, 1.0) * barWidth));
    std::string text;
    for (int cell = 0; cell < barWidth; ++cell)
        text += cell < filled ? "█" : "░";
    return text;
}

}  // namespace

std::optional<std::string> timeLeft(double fraction, std::chrono::duration<double> elapsed) {
    if (!(fraction > leastFractionToJudgeBy)) return std::nullopt;
    const double remaining = (1.0 - fraction) * elapsed.count() / fraction;
    if (!(remaining > almostDoneSeconds)) return "almost done";
    return std::to_string(std::lround(remaining)) + "s left";
}

ProgressLine::ProgressLine(std::string label)
    : label_(std::move(label)), terminal_(isatty(STDERR_FILENO) == 1) {}

ProgressLine::~ProgressLine() {
    if (terminal_ && !shown_.empty()) std::cerr << "\r\033[K" << std::flush;
}

void ProgressLine::show(double fraction) {
    const auto elapsed = std::chrono::steady_clock::now() - start_;
    if (const auto left = timeLeft(fraction, elapsed)) left_ = *left;
    const auto percent = std::to_string(static_cast<int>(std::clamp(fraction, 0.0, 1.0) * 100.0));
    show(label_ + "  " + bar(fraction) + "  " + percent + "%  " + left_);
}

void ProgressLine::show(const std::string& text) {
    if (!terminal_ || text == shown_) return;
    shown_ = text;
    std::cerr << "\r\033[K" << text << std::flush;
}

}  // namespace tessaloom
