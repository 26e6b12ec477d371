// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/InputStart.h"

#include <exception>

#include "base/Log.h"

namespace tessaloom {
namespace {

constexpr double cursorSamplesPerSecond = 120.0;

/// In place of one that the desktop refuses.
class UnknownPointer final : public PointerSource {
  public:
    std::optional<Point> location() override { return std::nullopt; }
    void stop() override {}
};

std::unique_ptr<PointerSource> makePointer(CapturePlatform& platform) {
    try {
        return platform.makePointerSource();
    } catch (const std::exception& error) {
        qCCritical(Log::recording, "Pointer unavailable; its path will not be recorded: %s", error.what());
        return std::make_unique<UnknownPointer>();
    }
}

/// None where it can't be made.
std::unique_ptr<InputEventSource> makeInput(CapturePlatform& platform) {
    try {
        return platform.makeInputEventSource();
    } catch (const std::exception& error) {
        qCCritical(Log::eventTap, "Failed to create event tap: %s", error.what());
        return nullptr;
    }
}

}  // namespace

std::unique_ptr<CursorSampler> startCursorSampler(CapturePlatform& platform, double origin,
                                                  const Rect& displayFrame) {
    auto sampler = std::make_unique<CursorSampler>(makePointer(platform), origin, displayFrame);
    sampler->start(cursorSamplesPerSecond);
    return sampler;
}

std::unique_ptr<InputEventTap> startEventTap(CapturePlatform& platform) {
    auto tap = std::make_unique<InputEventTap>(makeInput(platform));
    if (!tap->start())
        qCCritical(Log::recording, "Event tap unavailable; clicks and keys will not be recorded");
    return tap;
}

}  // namespace tessaloom
