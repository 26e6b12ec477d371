// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11StreamSource.h"

#include <xcb/composite.h>
#include <xcb/damage.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <iterator>
#include <thread>
#include <utility>

#include "capture/CaptureError.h"
#include "platform/x11/DamageRegion.h"
#include "platform/x11/X11BeneathWindows.h"

namespace tessaloom {
namespace {

void selectEvents(const X11Connection& connection, xcb_window_t window, std::uint32_t mask) {
    xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &mask);
}

struct Geometry {
    int width = 0;
    int height = 0;
    int border = 0;
};

std::optional<Geometry> geometryOf(const X11Connection& connection, xcb_drawable_t drawable) {
    const auto cookie = xcb_get_geometry(connection, drawable);
    const X11Reply<xcb_get_geometry_reply_t> reply(xcb_get_geometry_reply(connection, cookie, nullptr));
    if (!reply) return std::nullopt;
    return Geometry{reply->width, reply->height, reply->border_width};
}

/// The pixels of a damage event's window may have changed.
std::optional<xcb_window_t> damagedWindowOf(const X11Connection& connection,
                                            const xcb_generic_event_t& event) {
    const auto* extension = xcb_get_extension_data(connection, &xcb_damage_id);
    if (extension == nullptr || (event.response_type & 0x7F) != extension->first_event + XCB_DAMAGE_NOTIFY)
        return std::nullopt;
    return reinterpret_cast<const xcb_damage_notify_event_t&>(event).drawable;
}

/// A window came, went, moved or changed its place in the stack.
bool isAboutStack(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7F) {
        case XCB_CONFIGURE_NOTIFY:
        case XCB_MAP_NOTIFY:
        case XCB_UNMAP_NOTIFY:
        case XCB_CIRCULATE_NOTIFY:
        case XCB_REPARENT_NOTIFY:
        case XCB_DESTROY_NOTIFY:
            return true;
        default:
            return false;
    }
}

bool touch(const PixelRect& a, const PixelRect& b) {
    const PixelRect common = intersection({a.x - 1, a.y - 1, a.width + 2, a.height + 2}, b);
    return common.width > 0 && common.height > 0;
}

/// A part of the whole screen, without our own windows: where they are, what lies beneath is drawn into a
/// picture beside the screen, which is then read instead.
class RootSource final : public X11StreamSource {
  public:
    RootSource(const X11Connection& connection, const StreamConfiguration& configuration,
               const std::vector<LeftArea>& leftAreas)
        : connection_(connection),
          root_(connection.root()),
          originX_(pixels(configuration.filter.contentRect.x, configuration) + configuration.source.x),
          originY_(pixels(configuration.filter.contentRect.y, configuration) + configuration.source.y),
          picture_{0, 0, configuration.source.width, configuration.source.height},
          rootWidth_(connection.screen().width_in_pixels),
          rootHeight_(connection.screen().height_in_pixels) {
        selectEvents(connection, root_, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
        if (const auto geometry = geometryOf(connection, root_)) {
            rootWidth_ = geometry->width;
            rootHeight_ = geometry->height;
        }
        if (!X11BeneathWindows::isPossible(connection)) return;
        beneath_ = std::make_unique<X11BeneathWindows>(connection, leftAreas);
        refreshOwnAreas();
        // The applications get a moment to draw what our windows cover.
        if (hidesOwnWindows()) std::this_thread::sleep_for(std::chrono::milliseconds(60));
    }

    ~RootSource() override {
        if (canvas_ != XCB_NONE) xcb_free_pixmap(connection_, canvas_);
    }
    RootSource(const RootSource&) = delete;
    RootSource& operator=(const RootSource&) = delete;

    xcb_window_t damagedWindow() const override { return root_; }
    int damageOriginX() const override { return originX_; }
    int damageOriginY() const override { return originY_; }
    xcb_drawable_t drawable() const override { return hidesOwnWindows() ? canvas_ : root_; }
    int originX() const override { return hidesOwnWindows() ? 0 : originX_; }
    int originY() const override { return hidesOwnWindows() ? 0 : originY_; }
    PixelRect available() const override {
        return intersection(picture_, {-originX_, -originY_, rootWidth_, rootHeight_});
    }

    Change handle(const xcb_generic_event_t& event) override {
        if (const auto damaged = damagedWindowOf(connection_, event)) {
            if (!beneath_) return Change::none;
            for (const PixelRect& rect : beneath_->takeDamage(*damaged))
                hiddenDamage_.push_back(inPicture(rect));
            return Change::none;
        }
        stackIsOld_ = stackIsOld_ || isAboutStack(event);
        const auto type = event.response_type & 0x7F;
        if (beneath_ && type == XCB_DESTROY_NOTIFY)
            beneath_->forget(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
        if (type != XCB_CONFIGURE_NOTIFY) return Change::none;
        const auto& notify = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        if (notify.window != root_) return Change::none;
        rootWidth_ = notify.width;
        rootHeight_ = notify.height;
        return Change::everything;
    }

    /// What one of our own windows left or came to shows at once; others matter where they lie beneath one.
    Change afterEvents() override {
        if (!beneath_ || !(std::exchange(stackIsOld_, false) || beneath_->isOutdated())) return Change::none;
        const bool ownChanged = beneath_->refresh();
        refreshOwnAreas();
        if (ownChanged) return Change::everything;
        hiddenDamage_.insert(hiddenDamage_.end(), ownAreas_.begin(), ownAreas_.end());
        return hiddenDamage_.empty() ? Change::none : Change::parts;
    }

    std::vector<PixelRect> takeHiddenDamage() override { return std::exchange(hiddenDamage_, {}); }

    /// What our own windows draw is no change. But a new background of the screen tells of itself only all
    /// around a window that lies on it, not beneath.
    std::vector<PixelRect> changedBy(std::vector<PixelRect> damage) const override {
        std::erase_if(damage, [&](const PixelRect& rect) {
            return std::ranges::any_of(
                ownAreas_, [&](const PixelRect& area) { return intersection(rect, area) == rect; });
        });
        const auto touched = [&, around = damage](const PixelRect& area) {
            return std::ranges::any_of(around, [&](const PixelRect& rect) { return touch(rect, area); });
        };
        std::ranges::copy_if(ownAreas_, std::back_inserter(damage), touched);
        return damage;
    }

    void prepare(const std::vector<PixelRect>& rects) override {
        if (!hidesOwnWindows()) return;
        for (const PixelRect& rect : rects) {
            xcb_copy_area(connection_, root_, canvas_, copying_, static_cast<std::int16_t>(originX_ + rect.x),
                          static_cast<std::int16_t>(originY_ + rect.y), static_cast<std::int16_t>(rect.x),
                          static_cast<std::int16_t>(rect.y), static_cast<std::uint16_t>(rect.width),
                          static_cast<std::uint16_t>(rect.height));
            for (const PixelRect& area : ownAreas_) {
                const PixelRect part = intersection(rect, area);
                if (part.width > 0 && part.height > 0)
                    beneath_->draw({part.x + originX_, part.y + originY_, part.width, part.height}, canvas_,
                                   originX_, originY_);
            }
        }
    }

  private:
    bool hidesOwnWindows() const { return !ownAreas_.empty(); }

    PixelRect inPicture(const PixelRect& rect) const {
        return {rect.x - originX_, rect.y - originY_, rect.width, rect.height};
    }

    void refreshOwnAreas() {
        ownAreas_.clear();
        for (const PixelRect& area : beneath_->ownAreas()) {
            const PixelRect part = intersection(inPicture(area), picture_);
            if (part.width > 0 && part.height > 0) ownAreas_.push_back(part);
        }
        if (!hidesOwnWindows() || canvas_ != XCB_NONE) return;
        canvas_ = xcb_generate_id(connection_);
        xcb_create_pixmap(connection_, connection_.screen().root_depth, canvas_, root_,
                          static_cast<std::uint16_t>(picture_.width),
                          static_cast<std::uint16_t>(picture_.height));
        copying_ = xcb_generate_id(connection_);
        const std::array<std::uint32_t, 2> values{XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS, 0};
        xcb_create_gc(connection_, copying_, root_, XCB_GC_SUBWINDOW_MODE | XCB_GC_GRAPHICS_EXPOSURES,
                      values.data());
    }

    static int pixels(double points, const StreamConfiguration& configuration) {
        return static_cast<int>(std::lround(points * configuration.filter.pointPixelScale));
    }

    const X11Connection& connection_;
    xcb_window_t root_;
    int originX_;
    int originY_;
    PixelRect picture_;
    int rootWidth_;
    int rootHeight_;
    std::unique_ptr<X11BeneathWindows> beneath_;  ///< none where the server lacks what it takes
    std::vector<PixelRect> ownAreas_;             ///< in picture coordinates
    std::vector<PixelRect> hiddenDamage_;
    bool stackIsOld_ = false;
    xcb_pixmap_t canvas_ = XCB_NONE;  ///< of the picture's size, from when one of our windows is in it
    xcb_gcontext_t copying_ = XCB_NONE;
};

/// One window by itself, also while others cover it: the server keeps its pixels in a pixmap of its own. A
/// resized or newly shown window gets a new pixmap; the picture keeps the size it began with.
class WindowSource final : public X11StreamSource {
  public:
    WindowSource(const X11Connection& connection, const StreamConfiguration& configuration)
        : connection_(connection), window_(*configuration.filter.window), source_(configuration.source) {
        connection.requireExtension(&xcb_composite_id, "Composite");
        // Naming a window's pixmap came with version 0.2.
        const auto version = xcb_composite_query_version(connection, 0, 4);
        const X11Reply<xcb_composite_query_version_reply_t> answer(
            xcb_composite_query_version_reply(connection, version, nullptr));
        selectEvents(connection, window_, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        const auto redirect =
            xcb_composite_redirect_window_checked(connection, window_, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
        const X11Reply<xcb_generic_error_t> refusal(xcb_request_check(connection, redirect));
        if (refusal) throw CaptureError::noFrames();
        namePixmap();
    }

    ~WindowSource() override {
        releasePixmap();
        xcb_composite_unredirect_window(connection_, window_, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
        connection_.flush();
    }
    WindowSource(const WindowSource&) = delete;
    WindowSource& operator=(const WindowSource&) = delete;

    xcb_window_t damagedWindow() const override { return window_; }
    int damageOriginX() const override { return source_.x; }
    int damageOriginY() const override { return source_.y; }
    xcb_drawable_t drawable() const override { return pixmap_; }
    int originX() const override { return source_.x + geometry_.border; }
    int originY() const override { return source_.y + geometry_.border; }
    PixelRect available() const override {
        if (pixmap_ == XCB_NONE) return {};
        return intersection({0, 0, source_.width, source_.height},
                            {-source_.x, -source_.y, geometry_.width, geometry_.height});
    }

    Change handle(const xcb_generic_event_t& event) override {
        switch (event.response_type & 0x7F) {
            case XCB_CONFIGURE_NOTIFY: {
                const auto& notify = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
                return notify.window == window_ ? resized(notify) : Change::none;
            }
            case XCB_MAP_NOTIFY:
                if (reinterpret_cast<const xcb_map_notify_event_t&>(event).window != window_)
                    return Change::none;
                namePixmap();
                return Change::everything;
            case XCB_DESTROY_NOTIFY:
                return reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == window_
                           ? Change::gone
                           : Change::none;
            default:
                return Change::none;
        }
    }

  private:
    Change resized(const xcb_configure_notify_event_t& notify) {
        const bool sameSize = notify.width == geometry_.width && notify.height == geometry_.height &&
                              notify.border_width == geometry_.border;
        if (sameSize) return Change::none;  // only moved
        namePixmap();
        return Change::everything;
    }

    /// An unmapped window has no pixmap: there is then nothing to read until it is shown again.
    void namePixmap() {
        releasePixmap();
        const xcb_pixmap_t pixmap = xcb_generate_id(connection_);
        const auto name = xcb_composite_name_window_pixmap_checked(connection_, window_, pixmap);
        const X11Reply<xcb_generic_error_t> refusal(xcb_request_check(connection_, name));
        if (refusal) return;
        pixmap_ = pixmap;
        // The pixmap's own size: the window may have another one by now, which its next event will tell.
        const auto whole = geometryOf(connection_, pixmap);
        const auto window = geometryOf(connection_, window_);
        if (!whole || !window) return;
        geometry_ = {whole->width - 2 * window->border, whole->height - 2 * window->border, window->border};
    }

    void releasePixmap() {
        if (pixmap_ != XCB_NONE) xcb_free_pixmap(connection_, pixmap_);
        pixmap_ = XCB_NONE;
    }

    const X11Connection& connection_;
    xcb_window_t window_;
    PixelRect source_;
    xcb_pixmap_t pixmap_ = XCB_NONE;
    Geometry geometry_;
};

}  // namespace

std::unique_ptr<X11StreamSource> X11StreamSource::open(const X11Connection& connection,
                                                       const StreamConfiguration& configuration,
                                                       const std::vector<LeftArea>& leftAreas) {
    if (configuration.filter.window) return std::make_unique<WindowSource>(connection, configuration);
    return std::make_unique<RootSource>(connection, configuration, leftAreas);
}

}  // namespace tessaloom
