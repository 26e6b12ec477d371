// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/SourceResolver.h"

#include <QString>
#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "capture/CaptureError.h"

namespace tessaloom {
namespace {

/// Windows not wider and taller than this many points are helpers of their applications, not what users see.
constexpr double smallestWindowSide = 50;

double area(const Rect& rect) {
    return rect.width * rect.height;
}

Rect intersection(const Rect& a, const Rect& b) {
    const double left = std::max(a.minX(), b.minX());
    const double top = std::max(a.minY(), b.minY());
    return {left, top, std::max(0.0, std::min(a.maxX(), b.maxX()) - left),
            std::max(0.0, std::min(a.maxY(), b.maxY()) - top)};
}

/// In any script.
std::string lowercased(const std::string& text) {
    return QString::fromStdString(text).toLower().toStdString();
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

std::size_t mainDisplayIndex(const ShareableContent& content) {
    const auto main = std::ranges::find_if(content.displays, &ShareableDisplay::isMain);
    return main == content.displays.end() ? 0 : static_cast<std::size_t>(main - content.displays.begin());
}

[[noreturn]] void refuseNumber(const ShareableContent& content) {
    const std::size_t count = content.displays.size();
    throw CaptureError::noDisplay(count == 0 ? "The desktop has none at present."
                                  : count == 1
                                      ? "There is only display 0."
                                      : "The displays are numbered 0 to " + std::to_string(count - 1) + ".");
}

CaptureTarget displayTarget(const ShareableContent& content, std::size_t index) {
    const Rect bounds = content.displays[index].bounds;
    CaptureTarget target{{std::nullopt, bounds, content.pointPixelScale}, std::nullopt, std::nullopt};
    if (index != mainDisplayIndex(content)) target.displayBounds = bounds;
    return target;
}

CaptureTarget resolve(const MainDisplaySource&, const ShareableContent& content) {
    if (content.displays.empty()) refuseNumber(content);
    return displayTarget(content, mainDisplayIndex(content));
}

CaptureTarget resolve(const DisplaySource& source, const ShareableContent& content) {
    if (source.number < 0 || std::cmp_greater_equal(source.number, content.displays.size()))
        refuseNumber(content);
    return displayTarget(content, static_cast<std::size_t>(source.number));
}

CaptureTarget resolve(const RegionSource& source, const ShareableContent& content) {
    std::size_t best = content.displays.size();
    Rect bestPart{};
    for (std::size_t index = 0; index < content.displays.size(); ++index) {
        const Rect part = intersection(source.area, content.displays[index].bounds);
        if (area(part) > area(bestPart)) {
            best = index;
            bestPart = part;
        }
    }
    if (best == content.displays.size()) throw CaptureError::noDisplay("The area lies off every display.");
    CaptureTarget target = displayTarget(content, best);
    target.region = bestPart;
    return target;
}

bool matches(const ShareableWindow& window, const std::string& app, const std::string& title) {
    return isRecordable(window) &&
           (contains(lowercased(window.applicationName), app) || lowercased(window.bundleIdentifier) == app ||
            lowercased(window.desktopID) == app) &&
           contains(lowercased(window.title), title);
}

CaptureTarget resolve(const AppWindowSource& source, const ShareableContent& content) {
    const std::string app = lowercased(source.app);
    const std::string title = lowercased(source.title.value_or(std::string()));
    const ShareableWindow* best = nullptr;
    for (const ShareableWindow& window : content.windows) {
        if (matches(window, app, title) && (best == nullptr || area(window.frame) > area(best->frame))) {
            best = &window;
        }
    }
    if (best == nullptr) {
        throw CaptureError::windowNotFound(source.title ? source.app + " \"" + *source.title + "\""
                                                        : source.app);
    }
    return {{best->id, best->frame, content.pointPixelScale}, std::nullopt, std::nullopt};
}

CaptureTarget resolve(const PickerSource&, const ShareableContent&) {
    throw std::invalid_argument("What is to be picked can't be looked up.");
}

}  // namespace

bool isRecordable(const ShareableWindow& window) {
    return window.isNormal && !window.isOurOwn && window.frame.width > smallestWindowSide &&
           window.frame.height > smallestWindowSide;
}

CaptureTarget resolveSource(const CaptureSource& source, const ShareableContent& content) {
    return std::visit([&](const auto& wanted) { return resolve(wanted, content); }, source);
}

}  // namespace tessaloom
