// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11BeneathWindows.h"

#include <xcb/composite.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/HostClock.h"
#include "platform/x11/DamageRegion.h"
#include "platform/x11/X11WindowOwner.h"

namespace tessaloom {
namespace {

constexpr std::uint8_t alphaDepth = 32;

bool overlap(const PixelRect& a, const PixelRect& b) {
    const PixelRect common = intersection(a, b);
    return common.width > 0 && common.height > 0;
}

bool overlapAny(const PixelRect& rect, const std::vector<PixelRect>& areas) {
    return std::ranges::any_of(areas, [&](const PixelRect& area) { return overlap(rect, area); });
}

struct ShownWindow {
    xcb_window_t id = XCB_NONE;
    PixelRect frame;
    int border = 0;
    std::uint8_t depth = 0;
};

/// The top-level windows that are on the screen, from the bottom up. All requests go out before the first
/// answer is awaited.
std::vector<ShownWindow> shownWindows(const X11Connection& connection) {
    const X11Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, connection.root()), nullptr));
    if (!tree) return {};
    const xcb_window_t* first = xcb_query_tree_children(tree.get());
    const std::vector<xcb_window_t> ids(first, first + xcb_query_tree_children_length(tree.get()));
    std::vector<std::pair<xcb_get_window_attributes_cookie_t, xcb_get_geometry_cookie_t>> cookies;
    cookies.reserve(ids.size());
    for (const xcb_window_t id : ids)
        cookies.emplace_back(xcb_get_window_attributes(connection, id), xcb_get_geometry(connection, id));
    std::vector<ShownWindow> shown;
    for (std::size_t index = 0; index < ids.size(); ++index) {
        const X11Reply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(connection, cookies[index].first, nullptr));
        const X11Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(connection, cookies[index].second, nullptr));
        if (!attributes || !geometry || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
            continue;
        const int border = geometry->border_width;
        shown.push_back(
            {ids[index],
             {geometry->x, geometry->y, geometry->width + 2 * border, geometry->height + 2 * border},
             border,
             geometry->depth});
    }
    return shown;
}

PixelRect rootFrame(const X11Connection& connection) {
    const X11Reply<xcb_get_geometry_reply_t> root(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, connection.root()), nullptr));
    return root ? PixelRect{0, 0, root->width, root->height} : PixelRect{};
}

bool isComposited(const X11Connection& connection) {
    const xcb_atom_t selection = connection.atom("_NET_WM_CM_S0");
    if (selection == XCB_ATOM_NONE) return false;
    const X11Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr));
    return reply && reply->owner != XCB_NONE;
}

}  // namespace

bool X11BeneathWindows::isPossible(const X11Connection& connection) {
    const auto isThere = [&](xcb_extension_t* extension) {
        const auto* reply = xcb_get_extension_data(connection, extension);
        return reply != nullptr && reply->present != 0;
    };
    return isThere(&xcb_composite_id) && isThere(&xcb_damage_id) && isThere(&xcb_xfixes_id) &&
           isThere(&xcb_render_id);
}

X11BeneathWindows::X11BeneathWindows(const X11Connection& connection, const std::vector<LeftArea>& leftAreas)
    : connection_(connection) {
    // The server answers requests of an extension only after its version was asked for.
    const X11Reply<xcb_composite_query_version_reply_t> compositeVersion(xcb_composite_query_version_reply(
        connection, xcb_composite_query_version(connection, 0, 4), nullptr));
    const X11Reply<xcb_damage_query_version_reply_t> damageVersion(
        xcb_damage_query_version_reply(connection, xcb_damage_query_version(connection, 1, 1), nullptr));
    const X11Reply<xcb_xfixes_query_version_reply_t> fixesVersion(
        xcb_xfixes_query_version_reply(connection, xcb_xfixes_query_version(connection, 5, 0), nullptr));
    readFormats();
    composited_ = isComposited(connection);
    if (composited_) leftAreas_ = leftAreas;
    desktop_.emplace(connection, composited_);
    refresh();
}

X11BeneathWindows::~X11BeneathWindows() {
    for (const auto& [id, window] : windows_)
        release(id, window);
    connection_.flush();
}

/// The formats of the screen and of windows with alpha, both with eight bits a component.
void X11BeneathWindows::readFormats() {
    const X11Reply<xcb_render_query_pict_formats_reply_t> reply(xcb_render_query_pict_formats_reply(
        connection_, xcb_render_query_pict_formats(connection_), nullptr));
    if (!reply) return;
    const auto* first = xcb_render_query_pict_formats_formats(reply.get());
    for (const auto* format = first;
         format != first + xcb_render_query_pict_formats_formats_length(reply.get()); ++format) {
        const auto& components = format->direct;
        if (components.red_shift != 16 || components.green_shift != 8 || components.blue_shift != 0) continue;
        if (format->depth == alphaDepth && components.alpha_mask == 0xFF) alphaFormat_ = format->id;
        if (format->depth == connection_.screen().root_depth && components.alpha_mask == 0)
            opaqueFormat_ = format->id;
    }
}

/// Found out once for each window: it is told before the window is first shown.
bool X11BeneathWindows::isOurOwn(xcb_window_t window) {
    const auto known = isOwn_.find(window);
    if (known != isOwn_.end()) return known->second;
    const xcb_window_t inside = applicationWindowIn(connection_, window);
    if (inside == XCB_NONE) return false;  // a frame may yet get one
    const auto types = connection_.property32(inside, connection_.atom("_NET_WM_WINDOW_TYPE"));
    // The desktop cover is the one of ours that belongs in the picture.
    const bool isDesktop =
        std::ranges::find(types, connection_.atom("_NET_WM_WINDOW_TYPE_DESKTOP")) != types.end();
    return isOwn_[window] = !isDesktop && isOwnClass(instanceAndClass(connection_, inside).second);
}

void X11BeneathWindows::forget(xcb_window_t window) {
    isOwn_.erase(window);
}

bool X11BeneathWindows::refresh() {
    stack_.clear();
    std::vector<ShownWindow> others;
    std::vector<PixelRect> frames;
    std::vector<PixelRect> ours;
    for (const ShownWindow& window : shownWindows(connection_)) {
        frames.push_back(window.frame);
        if (isOurOwn(window.id)) {
            ours.push_back(window.frame);
        } else {
            others.push_back(window);
        }
    }
    const auto before = std::exchange(ownAreas_, leftAndPresent(ours));
    frames.insert(frames.end(), ownAreas_.begin(), ownAreas_.end());
    desktop_->setWindows(rootFrame(connection_), std::move(frames));
    for (const ShownWindow& window : others) {
        if (overlapAny(window.frame, ownAreas_)) show(window.id, window.frame, window.border, window.depth);
    }
    std::erase_if(windows_, [&](const auto& entry) {
        const bool isGone = std::ranges::find(stack_, entry.first) == stack_.end();
        if (isGone) release(entry.first, entry.second);
        return isGone;
    });
    return !std::ranges::equal(before, ownAreas_);
}

/// A compositing manager goes on showing a window for a while where it no longer is.
std::vector<PixelRect> X11BeneathWindows::leftAndPresent(const std::vector<PixelRect>& present) {
    const double now = HostClock::seconds();
    for (const PixelRect& area : std::exchange(presentAreas_, present)) {
        const bool isLeft = std::ranges::find(present, area) == present.end();
        if (isLeft && composited_) leftAreas_.push_back({area, now});
    }
    std::erase_if(leftAreas_, [&](const LeftArea& left) { return left.isClear(now); });
    std::vector<PixelRect> areas = present;
    std::ranges::transform(leftAreas_, std::back_inserter(areas), &LeftArea::area);
    return areas;
}

bool X11BeneathWindows::isOutdated() const {
    const double now = HostClock::seconds();
    return std::ranges::any_of(leftAreas_, [&](const LeftArea& left) { return left.isClear(now); });
}

/// A resized or newly shown window has a new pixmap, so it is named anew each time.
void X11BeneathWindows::show(xcb_window_t id, const PixelRect& frame, int border, std::uint8_t depth) {
    Window& window = windows_[id];
    if (window.damage == XCB_NONE) {
        xcb_composite_redirect_window(connection_, id, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
        window.damage = xcb_generate_id(connection_);
        xcb_damage_create(connection_, window.damage, id, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    }
    if (window.pixmap != XCB_NONE) xcb_free_pixmap(connection_, window.pixmap);
    window.frame = frame;
    window.border = border;
    window.depth = depth;
    window.pixmap = xcb_generate_id(connection_);
    xcb_composite_name_window_pixmap(connection_, id, window.pixmap);
    stack_.push_back(id);
}

void X11BeneathWindows::release(xcb_window_t id, const Window& window) const {
    xcb_free_pixmap(connection_, window.pixmap);
    xcb_damage_destroy(connection_, window.damage);
    xcb_composite_unredirect_window(connection_, id, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
}

std::vector<PixelRect> X11BeneathWindows::takeDamage(xcb_window_t id) {
    const auto found = windows_.find(id);
    if (found == windows_.end()) return {};
    xcb_damage_subtract(connection_, found->second.damage, XCB_NONE, XCB_NONE);
    std::vector<PixelRect> changed;
    for (const PixelRect& area : ownAreas_) {
        if (overlap(area, found->second.frame)) changed.push_back(intersection(area, found->second.frame));
    }
    return changed;
}

void X11BeneathWindows::draw(const PixelRect& part, xcb_pixmap_t target, int originX, int originY) const {
    desktop_->draw(part, target, originX, originY);
    const xcb_render_picture_t picture = xcb_generate_id(connection_);
    xcb_render_create_picture(connection_, picture, target, opaqueFormat_, 0, nullptr);
    for (const xcb_window_t id : stack_)
        drawWindow(id, windows_.at(id), part, picture, originX, originY);
    xcb_render_free_picture(connection_, picture);
}

void X11BeneathWindows::drawWindow(xcb_window_t id, const Window& window, const PixelRect& part,
                                   xcb_render_picture_t target, int originX, int originY) const {
    const PixelRect shown = intersection(part, window.frame);
    if (shown.width <= 0 || shown.height <= 0) return;
    const bool hasAlpha = window.depth == alphaDepth;
    const xcb_render_picture_t source = xcb_generate_id(connection_);
    xcb_render_create_picture(connection_, source, window.pixmap, hasAlpha ? alphaFormat_ : opaqueFormat_, 0,
                              nullptr);
    const xcb_xfixes_region_t shape = xcb_generate_id(connection_);
    xcb_xfixes_create_region_from_window(connection_, shape, id, XCB_SHAPE_SK_BOUNDING);
    xcb_xfixes_set_picture_clip_region(connection_, target, shape,
                                       static_cast<std::int16_t>(window.frame.x + window.border - originX),
                                       static_cast<std::int16_t>(window.frame.y + window.border - originY));
    xcb_render_composite(
        connection_, hasAlpha && composited_ ? XCB_RENDER_PICT_OP_OVER : XCB_RENDER_PICT_OP_SRC, source,
        XCB_NONE, target, static_cast<std::int16_t>(shown.x - window.frame.x),
        static_cast<std::int16_t>(shown.y - window.frame.y), 0, 0,
        static_cast<std::int16_t>(shown.x - originX), static_cast<std::int16_t>(shown.y - originY),
        static_cast<std::uint16_t>(shown.width), static_cast<std::uint16_t>(shown.height));
    xcb_xfixes_destroy_region(connection_, shape);
    xcb_render_free_picture(connection_, source);
}

}  // namespace tessaloom
