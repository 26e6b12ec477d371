// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ListCommands.h"

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <limits>
#include <sstream>

#include "base/Defaults.h"
#include "core/Json.h"
#include "shell/Arguments.h"
#include "shell/BundleArgument.h"
#include "take/RecordingLibrary.h"
#include "take/RecordingSummary.h"

namespace tessaloom {

template <typename Coder, RecordOf<RecordingSummary> Record>
void fields(Coder& coder, Record& summary) {
    coder.field("recording_id", summary.recordingId);
    coder.field("created", summary.created);
    coder.field("duration_seconds", summary.durationSeconds);
    coder.field("has_camera", summary.hasCamera);
    coder.field("has_microphone", summary.hasMicrophone);
    coder.field("has_captions", summary.hasCaptions);
    coder.field("path", summary.path);
}

namespace {

std::string inSeconds(double duration) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << duration << " s";
    return text.str();
}

const char* yesOrNo(bool value) {
    return value ? "yes" : "no";
}

void printLine(const RecordingSummary& summary) {
    std::cout << summary.recordingId << "  " << std::setw(8) << inSeconds(summary.durationSeconds) << '\n';
}

void printDescription(const RecordingSummary& summary) {
    std::cout << "Name        " << summary.recordingId << "\nCreated     " << summary.created
              << "\nDuration    " << inSeconds(summary.durationSeconds) << "\nCamera      "
              << yesOrNo(summary.hasCamera) << "\nMicrophone  " << yesOrNo(summary.hasMicrophone)
              << "\nCaptions    " << yesOrNo(summary.hasCaptions) << "\nPath        " << summary.path << '\n';
}

}  // namespace

ExitStatus runListCommand(const QStringList& words) {
    const Arguments arguments(words, {{"json", {}, {}}}, {});
    const RecordingLibrary library(Defaults::libraryFolder());
    std::vector<RecordingSummary> summaries;
    for (const TakeBundle& bundle : library.recentBundles(std::numeric_limits<std::size_t>::max())) {
        if (isBundle(bundle.url)) summaries.push_back(RecordingSummary::of(bundle));
    }
    if (arguments.has("json")) {
        std::cout << encodePretty(summaries) << '\n';
    } else {
        std::ranges::for_each(summaries, printLine);
    }
    return ExitStatus::done;
}

ExitStatus runInfoCommand(const QStringList& words) {
    const Arguments arguments(words, {{"json", {}, {}}}, {"RECORDING"});
    const auto summary = RecordingSummary::of(findBundle(arguments.words().first()));
    if (arguments.has("json")) {
        std::cout << encodePretty(summary) << '\n';
    } else {
        printDescription(summary);
    }
    return ExitStatus::done;
}

}  // namespace tessaloom
