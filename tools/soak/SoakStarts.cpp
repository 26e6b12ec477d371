// SPDX-License-Identifier: GPL-3.0-or-later
// Says how soon recordings of a 1080p screen with microphone and system audio start, and how soon they are
// complete after the stop. Arguments: the recorder, how many. Fails when the median misses what is promised.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <vector>

#include "soak/RecorderRun.h"
#include "support/SoundServer.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualDesktop.h"
#include "support/VirtualSound.h"

namespace tessaloom::test {
namespace {

constexpr double longestStart = 0.200;
constexpr double longestStop = 0.500;

/// Prints it; whether the median stays below the limit. All in seconds.
bool judge(const char* what, std::vector<double> values, double limit) {
    std::ranges::sort(values);
    const double median = values[values.size() / 2];
    std::printf("%s: median %.0f ms, shortest %.0f, longest %.0f of %zu (at most %.0f)\n", what,
                1000 * median, 1000 * values.front(), 1000 * values.back(), values.size(), 1000 * limit);
    return median <= limit;
}

int run(const std::string& recorder, int count) {
    const VirtualDesktop desktop(1920, 1080);
    const SoundServer sound(desktop.environment());
    const VirtualSound microphone(sound.socket(), VirtualSound::Kind::microphone, "soak_microphone");
    std::vector<double> starts;
    std::vector<double> stops;
    for (int round = 0; round < count; ++round) {
        const TemporaryFolder library;
        RecorderRun take(recorder, sound.environment(), library.path(), {"--microphone", "--system-audio"});
        starts.push_back(take.startSeconds());
        stops.push_back(take.stop());
    }
    const bool startsInTime = judge("start to first frame", starts, longestStart);
    const bool stopsInTime = judge("stop to finished bundle", stops, longestStop);
    return startsInTime && stopsInTime ? 0 : 1;
}

}  // namespace
}  // namespace tessaloom::test

int main(int argumentCount, char** arguments) {
    const int count = argumentCount == 3 ? std::atoi(arguments[2]) : 0;
    if (count < 1) {
        std::fputs("usage: soak_starts RECORDER COUNT\n", stderr);
        return 2;
    }
    try {
        return tessaloom::test::run(arguments[1], count);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "soak_starts: %s\n", error.what());
        return 1;
    }
}
