// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/InspectCommand.h"

#include <algorithm>
#include <array>
#include <iostream>

#include "core/ZoomFields.h"
#include "motion/ZoomEngine.h"
#include "render/CursorImage.h"
#include "shell/Arguments.h"
#include "shell/BundleArgument.h"
#include "shell/CutFacts.h"
#include "shell/FrameFacts.h"
#include "shell/SizeArgument.h"

namespace tessaloom {
namespace {

TakeBundle onlyBundle(const QStringList& words) {
    return findBundle(Arguments(words, {}, {"RECORDING"}).words().first());
}

std::string logFacts(const QStringList& words) {
    return encode(openLog(onlyBundle(words)));
}

std::string editFacts(const QStringList& words) {
    return encode(openEdit(onlyBundle(words)));
}

std::string zoomFacts(const QStringList& words) {
    const Arguments arguments(words, {{"duration", "S", {}}, {"zoom-factor", "F", {}}}, {"RECORDING"});
    const auto duration = arguments.number("duration");
    ZoomEngine engine;
    engine.settings.zoomFactor = arguments.number("zoom-factor").value_or(engine.settings.zoomFactor);
    const EventLog log = openLog(findBundle(arguments.words().first()));
    return encodePretty(engine.generate(log, duration.value_or(logDuration(log))));
}

std::string cutFactsOf(const QStringList& words) {
    return cutFacts(openTake(onlyBundle(words)));
}

std::string frameFactsOf(const QStringList& words) {
    const Arguments arguments(words, {{"at", "S", {}}, {"size", "WxH", {}}}, {"RECORDING"});
    const auto times = arguments.numbers("at");
    const auto size = arguments.text("size");
    if (times.empty()) throw UsageError("--at S is missing.");
    if (!size) throw UsageError("--size WxH is missing.");
    const CanvasSize canvas = parseSize(*size);
    const OpenTake take = openTake(findBundle(arguments.words().first()));
    const CursorImage cursor = makeCursorImage(take.edit.cursorStyle, cursorThemes());
    return frameFacts(take.composer(cursor.size, cursor.hotspot), times, canvas);
}

struct Subject {
    const char* name;
    std::string (*facts)(const QStringList& words);
};

constexpr std::array subjects = {Subject{"log", logFacts}, Subject{"edit", editFacts},
                                 Subject{"zooms", zoomFacts}, Subject{"cuts", cutFactsOf},
                                 Subject{"frame", frameFactsOf}};

}  // namespace

ExitStatus runInspectCommand(const QStringList& words) {
    if (words.isEmpty()) throw UsageError("What to inspect is missing.");
    const auto subject =
        std::ranges::find(subjects, words.first(), [](const Subject& each) { return QString(each.name); });
    if (subject == subjects.end())
        throw UsageError("There is nothing called \"" + words.first().toStdString() + "\" to inspect.");
    std::cout << subject->facts(words.mid(1)) << '\n';
    return ExitStatus::done;
}

}  // namespace tessaloom
