// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11SourceDamage.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tessaloom {

X11SourceDamage::X11SourceDamage(const X11Connection& connection, xcb_window_t window)
    : connection_(connection),
      firstEvent_(connection.requireExtension(&xcb_damage_id, "DAMAGE").first_event),
      damage_(xcb_generate_id(connection)),
      region_(xcb_generate_id(connection)) {
    connection.requireExtension(&xcb_xfixes_id, "XFIXES");
    // The server answers requests of an extension only after its version was asked for.
    const X11Reply<xcb_damage_query_version_reply_t> damageVersion(
        xcb_damage_query_version_reply(connection, xcb_damage_query_version(connection, 1, 1), nullptr));
    const X11Reply<xcb_xfixes_query_version_reply_t> fixesVersion(
        xcb_xfixes_query_version_reply(connection, xcb_xfixes_query_version(connection, 5, 0), nullptr));
    xcb_damage_create(connection, damage_, window, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    xcb_xfixes_create_region(connection, region_, 0, nullptr);
}

X11SourceDamage::~X11SourceDamage() {
    xcb_damage_destroy(connection_, damage_);
    xcb_xfixes_destroy_region(connection_, region_);
    connection_.flush();
}

bool X11SourceDamage::isDamageEvent(const xcb_generic_event_t& event) const {
    return (event.response_type & 0x7F) == firstEvent_ + XCB_DAMAGE_NOTIFY;
}

std::vector<PixelRect> X11SourceDamage::take(X11StreamSource& source) const {
    xcb_damage_subtract(connection_, damage_, XCB_NONE, region_);
    const auto cookie = xcb_xfixes_fetch_region(connection_, region_);
    const X11Reply<xcb_xfixes_fetch_region_reply_t> reply(
        xcb_xfixes_fetch_region_reply(connection_, cookie, nullptr));
    std::vector<PixelRect> rects;
    if (!reply) return rects;
    const auto* first = xcb_xfixes_fetch_region_rectangles(reply.get());
    const int count = xcb_xfixes_fetch_region_rectangles_length(reply.get());
    for (const xcb_rectangle_t* rect = first; rect != first + count; ++rect) {
        rects.push_back(
            {rect->x - source.damageOriginX(), rect->y - source.damageOriginY(), rect->width, rect->height});
    }
    rects = source.changedBy(std::move(rects));
    std::ranges::copy(source.takeHiddenDamage(), std::back_inserter(rects));
    return rects;
}

}  // namespace tessaloom
