// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/RecordArguments.h"

#include <cmath>

#include "shell/Arguments.h"
#include "shell/CommandError.h"

namespace tessaloom {
namespace {

/// In the place of an area's numbers.
const QString selectedArea = "select";

Rect parseArea(const QString& text) {
    const QStringList parts = text.split(',');
    double values[4] = {};
    bool ok = parts.size() == 4;
    for (int i = 0; ok && i < 4; ++i) {
        values[i] = parts[i].toDouble(&ok);
        ok = ok && std::isfinite(values[i]);
    }
    if (!ok) throw UsageError("--area takes four numbers, X,Y,WIDTH,HEIGHT, or the word select.");
    if (!(values[2] > smallestRegionSide && values[3] > smallestRegionSide)) {
        throw UsageError("The area must be wider and taller than 8 points.");
    }
    return {values[0], values[1], values[2], values[3]};
}

CaptureSource parseSource(const Arguments& arguments) {
    const auto display = arguments.integer("display");
    const auto area = arguments.text("area");
    const auto window = arguments.text("window");
    const auto title = arguments.text("title");
    const bool picks = arguments.has("pick");
    if (int{display.has_value()} + int{area.has_value()} + int{window.has_value()} + int{picks} > 1) {
        throw UsageError("Choose one of --display, --area, --window and --pick.");
    }
    if (title && !window) throw UsageError("--title narrows down --window, which is missing.");
    if (area && *area != selectedArea) return RegionSource{parseArea(*area)};
    if (picks) return PickerSource{};
    if (display) return DisplaySource{*display};
    if (!window) return MainDisplaySource{};
    if (window->isEmpty()) throw UsageError("--window takes an application's name.");
    AppWindowSource source{window->toStdString(), std::nullopt};
    if (title) source.title = title->toStdString();
    return source;
}

/// Of --name and --no-name; nothing when neither is given.
std::optional<bool> parseSwitch(const Arguments& arguments, const QString& name) {
    const bool on = arguments.has(name);
    const bool off = arguments.has("no-" + name);
    if (on && off)
        throw UsageError(QStringLiteral("Choose one of --%1 and --no-%1.").arg(name).toStdString());
    return on || off ? std::optional(on) : std::nullopt;
}

}  // namespace

RecordArguments RecordArguments::parse(const QStringList& words) {
    const Arguments arguments(words,
                              {{"display", "N", {}},
                               {"area", "X,Y,W,H", {}},
                               {"window", "APP", {}},
                               {"title", "TEXT", {}},
                               {"pick", {}, {}},
                               {"countdown", "S", {}},
                               {"duration", "S", {}},
                               {"microphone", {}, {}},
                               {"no-microphone", {}, {}},
                               {"camera", {}, {}},
                               {"no-camera", {}, {}},
                               {"system-audio", {}, {}},
                               {"no-system-audio", {}, {}}},
                              {});
    RecordArguments parsed{.source = parseSource(arguments),
                           .selectsArea = arguments.text("area") == selectedArea,
                           .countdownSeconds = arguments.integer("countdown"),
                           .durationSeconds = arguments.number("duration"),
                           .microphone = parseSwitch(arguments, "microphone"),
                           .camera = parseSwitch(arguments, "camera"),
                           .systemAudio = parseSwitch(arguments, "system-audio")};
    if (parsed.durationSeconds && !(*parsed.durationSeconds > 0)) {
        throw UsageError("--duration takes a number of seconds above 0.");
    }
    if (parsed.countdownSeconds && *parsed.countdownSeconds < 0) {
        throw UsageError("--countdown takes a number of seconds, 0 for none.");
    }
    return parsed;
}

}  // namespace tessaloom
