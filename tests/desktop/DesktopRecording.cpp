// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/DesktopRecording.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include "export/HeldFrameReader.h"
#include "support/PixelAt.h"
#include "take/RecordingLibrary.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr int colorTolerance = 6;
constexpr const char* settingsFile = "settings.ini";

void runOn(const VirtualDesktop& desktop, const std::string& command) {
    ChildProcess shell({"sh", "-c", command}, desktop.environment());
    if (shell.waitForExit(5s) != 0) throw std::runtime_error(command + ": " + shell.errors());
}

std::string withoutLineEnd(std::string text) {
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

}  // namespace

Environment programEnvironment(const Environment& desktop, const std::filesystem::path& library) {
    Environment environment = desktop;
    environment["TESSALOOM_LIBRARY"] = library.string();
    environment["TESSALOOM_CONFIG"] = (library / settingsFile).string();
    environment["TESSALOOM_VERBOSE"] = "1";
    return environment;
}

DesktopRecording::DesktopRecording(const Environment& environment, std::vector<std::string> arguments)
    : environment_(programEnvironment(environment, library_.path())) {
    std::vector<std::string> command{TESSALOOM_PROGRAM, "record", "--countdown", "0"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    program_ = std::make_unique<ChildProcess>(command, environment_);
    for (int round = 0; program_->errors().find("Recording started") == std::string::npos; ++round) {
        if (round > 1000 || !program_->running()) throw std::runtime_error(program_->errors());
        program_->waitForExit(10ms);
    }
}

TakeBundle DesktopRecording::bundle() const {
    const auto bundles = RecordingLibrary(library_.path()).recentBundles(1);
    if (bundles.empty()) throw std::runtime_error("there is no bundle");
    return bundles.front();
}

TakeBundle DesktopRecording::stop() {
    program_->signal(SIGINT);
    return waitForEnd();
}

TakeBundle DesktopRecording::waitForEnd() {
    if (program_->waitForExit(20s) != 0) throw std::runtime_error("record failed: " + program_->errors());
    const TakeBundle finished{withoutLineEnd(program_->output())};
    if (finished.url != bundle().url) throw std::runtime_error("unexpected output: " + program_->output());
    return finished;
}

bool isWithoutRecordings(const std::filesystem::path& library) {
    return std::ranges::all_of(std::filesystem::directory_iterator(library),
                               [](const auto& entry) { return entry.path().filename() == settingsFile; });
}

void splitScreen(const VirtualDesktop& desktop) {
    runOn(desktop, "xrandr --setmonitor '*LEFT' 320/100x480/100+0+0 screen");
    runOn(desktop, "xrandr --setmonitor RIGHT 320/100x480/100+320+0 none");
}

void setDotsPerInch(const VirtualDesktop& desktop, int dotsPerInch) {
    runOn(desktop, "echo 'Xft.dpi: " + std::to_string(dotsPerInch) + "' | xrdb -merge");
}

BgraImage recordedPicture(const TakeBundle& bundle, double time) {
    HeldFrameReader frames(
        MovieReader::open(bundle.file(TakeBundle::screenFile), MovieReader::TimeRange{time, time + 0.001}));
    const DecodedFrame* frame = frames.frame(time);
    if (frame == nullptr) throw std::runtime_error("no picture at that time");
    BgraImage picture;
    frame->toBgra(picture);
    return picture;
}

std::vector<double> recordedTimes(const TakeBundle& bundle) {
    const auto movie = MovieReader::open(bundle.file(TakeBundle::screenFile));
    std::vector<double> times;
    while (const auto frame = movie->next())
        times.push_back(frame->time());
    return times;
}

std::uint32_t colorAt(const BgraImage& picture, int x, int y) {
    const std::uint8_t* pixel = pixelAt(picture, x, y);
    return static_cast<std::uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
}

bool isNearly(std::uint32_t color, std::uint32_t expected) {
    const auto component = [](std::uint32_t value, unsigned shift) {
        return static_cast<int>(value >> shift & 0xFFU);
    };
    for (const unsigned shift : {0U, 8U, 16U}) {
        if (std::abs(component(color, shift) - component(expected, shift)) > colorTolerance) return false;
    }
    return true;
}

}  // namespace tessaloom::test
