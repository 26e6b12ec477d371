// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace tessaloom {

/// The time that long work still takes, judged by the pace so far: "12s left", or "almost done". Nothing
/// while there is too little to judge by.
std::optional<std::string> timeLeft(double fraction, std::chrono::duration<double> elapsed);

/// A bar with the time left on the last line of a terminal (stderr), drawn over at each step and wiped at the
/// end. Where stderr is no terminal it shows nothing.
class ProgressLine {
  public:
    explicit ProgressLine(std::string label);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(double fraction);
    /// A text in the bar's place.
    void show(const std::string& text);

  private:
    std::string label_;
    bool terminal_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::string shown_;
    std::string left_;
};

}  // namespace tessaloom
