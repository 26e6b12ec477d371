// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11StreamSource.h"

#include <xcb/composite.h>

#include <cmath>

#include "capture/CaptureError.h"
#include "platform/x11/DamageRegion.h"

namespace tessaloom {
namespace {

void selectStructureEvents(const X11Connection& connection, xcb_window_t window) {
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
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

/// A part of the whole screen.
class RootSource final : public X11StreamSource {
  public:
    RootSource(const X11Connection& connection, const StreamConfiguration& configuration)
        : root_(connection.root()),
          originX_(pixels(configuration.filter.contentRect.x, configuration) + configuration.source.x),
          originY_(pixels(configuration.filter.contentRect.y, configuration) + configuration.source.y),
          picture_{0, 0, configuration.source.width, configuration.source.height},
          rootWidth_(connection.screen().width_in_pixels),
          rootHeight_(connection.screen().height_in_pixels) {
        selectStructureEvents(connection, root_);
        if (const auto geometry = geometryOf(connection, root_)) {
            rootWidth_ = geometry->width;
            rootHeight_ = geometry->height;
        }
    }

    xcb_window_t damagedWindow() const override { return root_; }
    int damageOriginX() const override { return originX_; }
    int damageOriginY() const override { return originY_; }
    xcb_drawable_t drawable() const override { return root_; }
    int originX() const override { return originX_; }
    int originY() const override { return originY_; }
    PixelRect available() const override {
        return intersection(picture_, {-originX_, -originY_, rootWidth_, rootHeight_});
    }

    Change handle(const xcb_generic_event_t& event) override {
        if ((event.response_type & 0x7F) != XCB_CONFIGURE_NOTIFY) return Change::none;
        const auto& notify = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        if (notify.window != root_) return Change::none;
        rootWidth_ = notify.width;
        rootHeight_ = notify.height;
        return Change::everything;
    }

  private:
    static int pixels(double points, const StreamConfiguration& configuration) {
        return static_cast<int>(std::lround(points * configuration.filter.pointPixelScale));
    }

    xcb_window_t root_;
    int originX_;
    int originY_;
    PixelRect picture_;
    int rootWidth_;
    int rootHeight_;
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
        selectStructureEvents(connection, window_);
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
                                                       const StreamConfiguration& configuration) {
    if (configuration.filter.window) return std::make_unique<WindowSource>(connection, configuration);
    return std::make_unique<RootSource>(connection, configuration);
}

}  // namespace tessaloom
