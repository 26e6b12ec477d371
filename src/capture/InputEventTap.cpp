// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/InputEventTap.h"

#include <stdexcept>
#include <utility>

#include "base/Log.h"
#include "capture/KeyLabel.h"

namespace tessaloom {

bool InputEventTap::start() {
    if (!source_) return false;
    try {
        source_->start([this](const RawInput& input) { add(input); });
        return true;
    } catch (const std::runtime_error& error) {
        qCCritical(Log::eventTap, "Failed to create event tap: %s", error.what());
        return false;
    }
}

void InputEventTap::stop() {
    if (source_) source_->stop();
}

void InputEventTap::add(const RawInput& input) {
    RawEvent event{input.hostTime, input.kind, {}};
    if (input.kind == RawInput::Kind::key) event.label = keyLabel(input.keyName, input.modifiers);
    const std::lock_guard guard(lock_);
    events_.push_back(std::move(event));
}

std::vector<RawEvent> InputEventTap::takeEvents() {
    const std::lock_guard guard(lock_);
    return std::exchange(events_, {});
}

}  // namespace tessaloom
