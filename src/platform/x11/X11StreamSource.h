// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <vector>

#include "capture/ScreenStream.h"
#include "platform/x11/LeftArea.h"
#include "platform/x11/X11Connection.h"

namespace tessaloom {

/// Where a stream's pixels are read: a part of the root window, or a window's own off-screen picture.
class X11StreamSource {
  public:
    enum class Change {
        none,
        parts,       ///< what takeHiddenDamage() tells
        everything,  ///< all pixels must be read anew
        gone,        ///< the source is no more
    };

    /// Windows of ours at `leftAreas` were hidden before. Throws CaptureError or std::runtime_error.
    static std::unique_ptr<X11StreamSource> open(const X11Connection& connection,
                                                 const StreamConfiguration& configuration,
                                                 const std::vector<LeftArea>& leftAreas);
    virtual ~X11StreamSource() = default;

    /// The window whose damage tells of changes, and the picture's top left corner in its coordinates.
    virtual xcb_window_t damagedWindow() const = 0;
    virtual int damageOriginX() const = 0;
    virtual int damageOriginY() const = 0;

    /// What to read from, and the picture's top left corner in its coordinates.
    virtual xcb_drawable_t drawable() const = 0;
    virtual int originX() const = 0;
    virtual int originY() const = 0;
    /// The area of the picture that has pixels at present; the rest is black. In picture coordinates.
    virtual PixelRect available() const = 0;

    /// What changed that the damaged window's damage doesn't tell, in picture coordinates. Emptied by the
    /// call.
    virtual std::vector<PixelRect> takeHiddenDamage() { return {}; }
    /// What may have changed for this damage of the damaged window, both in picture coordinates.
    virtual std::vector<PixelRect> changedBy(std::vector<PixelRect> damage) const { return damage; }
    /// Brings these parts of the drawable up to date, in picture coordinates. Before each reading.
    virtual void prepare(const std::vector<PixelRect>&) {}

    virtual Change handle(const xcb_generic_event_t& event) = 0;
    /// What the events handled since the last call come to, besides.
    virtual Change afterEvents() { return Change::none; }
};

}  // namespace tessaloom
