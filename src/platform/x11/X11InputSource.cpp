// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11InputSource.h"

#include <poll.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <stdexcept>

#include "base/HostClock.h"
#include "platform/x11/XSettings.h"

namespace tessaloom {
namespace {

constexpr std::uint32_t leftButton = 1;
constexpr std::uint32_t rightButton = 3;
constexpr std::uint32_t firstWheelButton = 4;  // up, down, left and right: one press per notch
constexpr std::uint32_t lastWheelButton = 7;

double secondsOf(std::chrono::milliseconds time) {
    return static_cast<double>(time.count()) / 1000.0;
}

}  // namespace

X11InputSource::X11InputSource(std::unique_ptr<X11Connection> connection)
    : connection_(std::move(connection)) {}

X11InputSource::~X11InputSource() {
    stop();
}

void X11InputSource::start(Handler handler) {
    const auto limit = connection_->limitWaits();
    handler_ = std::move(handler);
    inputExtension_ = connection_->requireExtension(&xcb_input_id, "XInput").major_opcode;
    keyboard_.emplace(*connection_);
    readPointerMapping();
    clickLimits_ = tessaloom::clickLimits(*connection_);
    selectRawEvents();
    connection_->requireServer();
    thread_ = std::jthread([this](const std::stop_token& stopToken) { run(stopToken); });
}

void X11InputSource::stop() {
    thread_.request_stop();
    connection_->hangUp();
    if (thread_.joinable()) thread_.join();
}

void X11InputSource::selectRawEvents() const {
    // From version 2.1 on raw events also arrive while another program holds a grab.
    const auto version = xcb_input_xi_query_version(*connection_, 2, 2);
    const X11Reply<xcb_input_xi_query_version_reply_t> reply(
        xcb_input_xi_query_version_reply(*connection_, version, nullptr));
    if (!reply || reply->major_version < 2)
        throw std::runtime_error("The X server's XInput is older than 2.0.");
    struct {
        xcb_input_event_mask_t header;
        std::uint32_t mask;
    } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS |
                    XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE};
    const auto cookie =
        xcb_input_xi_select_events_checked(*connection_, connection_->root(), 1, &selection.header);
    const X11Reply<xcb_generic_error_t> refusal(xcb_request_check(*connection_, cookie));
    if (refusal) throw std::runtime_error("The X server refuses to report input.");
}

void X11InputSource::readPointerMapping() {
    std::iota(logicalButton_.begin(), logicalButton_.end(), std::uint8_t{0});
    const auto cookie = xcb_get_pointer_mapping(*connection_);
    const X11Reply<xcb_get_pointer_mapping_reply_t> reply(
        xcb_get_pointer_mapping_reply(*connection_, cookie, nullptr));
    if (!reply) return;
    std::copy_n(xcb_get_pointer_mapping_map(reply.get()), xcb_get_pointer_mapping_map_length(reply.get()),
                logicalButton_.begin() + 1);
}

void X11InputSource::run(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
        // Before the wait: events that came along with a reply are not on the socket any more.
        while (const auto event = connection_->pollEvent())
            handle(*event);
        if (connection_->lost()) return;
        deliverRepeats();
        waitForInput();
    }
}

/// Until an event, the next repeat, or a stop, which hangs up.
void X11InputSource::waitForInput() const {
    int milliseconds = -1;
    if (const auto due = repeat_.nextTime())
        milliseconds = static_cast<int>(std::ceil(std::max(*due - HostClock::seconds(), 0.0) * 1000.0));
    pollfd descriptor{connection_->fileDescriptor(), POLLIN, 0};
    poll(&descriptor, 1, milliseconds);
}

void X11InputSource::handle(const xcb_generic_event_t& event) {
    if (keyboard_->handle(event)) return;
    if ((event.response_type & 0x7F) == XCB_MAPPING_NOTIFY) {
        readPointerMapping();
        return;
    }
    if ((event.response_type & 0x7F) != XCB_GE_GENERIC) return;
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if (generic.extension != inputExtension_) return;
    // Raw key and button events share one layout.
    handleRaw(reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event), generic.event_type);
}

void X11InputSource::handleRaw(const xcb_input_raw_button_press_event_t& event, std::uint16_t type) {
    const double hostTime = HostClock::fromServerMilliseconds(event.time, HostClock::seconds());
    const auto key = static_cast<xcb_keycode_t>(event.detail);
    if (type == XCB_INPUT_RAW_BUTTON_PRESS) handleButton(event.detail, hostTime);
    if (type == XCB_INPUT_RAW_KEY_RELEASE) repeat_.release(key);
    if (type == XCB_INPUT_RAW_KEY_PRESS) handleKeyPress(key, hostTime);
}

void X11InputSource::handleKeyPress(xcb_keycode_t key, double hostTime) {
    keyboard_->refresh();
    if (keyboard_->isModifier(key)) return;
    reportKey(key, hostTime);
    if (!keyboard_->repeats(key)) return;
    repeat_.press(key, hostTime, secondsOf(keyboard_->repeatDelay()), secondsOf(keyboard_->repeatInterval()));
}

void X11InputSource::handleButton(std::uint32_t physicalButton, double hostTime) {
    const std::uint32_t button = logicalButton_[physicalButton & 0xFFU];
    if (button == leftButton) handler_({hostTime, RawInput::Kind::leftButton, {}, {}});
    if (button == rightButton) handler_({hostTime, RawInput::Kind::rightButton, {}, {}});
    if (button >= firstWheelButton && button <= lastWheelButton) {
        handler_({hostTime, RawInput::Kind::scroll, {}, {}});
    }
}

void X11InputSource::reportKey(xcb_keycode_t key, double hostTime) {
    handler_({hostTime, RawInput::Kind::key, keyboard_->keyName(key), keyboard_->modifiersFor(key)});
}

void X11InputSource::deliverRepeats() {
    while (const auto repeat = repeat_.takeDue(HostClock::seconds()))
        reportKey(repeat->key, repeat->time);
}

}  // namespace tessaloom
