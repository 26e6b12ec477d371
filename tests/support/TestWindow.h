// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <string>

namespace tessaloom::test {

/// A rectangle in pixels, relative to the parent for windows and to the window for fills.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// Managed windows are placed and framed by the window manager; unmanaged ones (override-redirect) stand
/// exactly where they are put.
enum class WindowKind { Managed, Unmanaged };

struct WindowDescription {
    PixelRect rect;
    std::uint32_t rgb = 0;
    WindowKind kind = WindowKind::Unmanaged;
    std::string title = {};
    /// Both halves of WM_CLASS.
    std::string applicationName = {};
    bool isMapped = true;
};

/// An X window of one colour. Every call returns when the server has carried it out. The connection
/// must outlive it.
class TestWindow {
  public:
    TestWindow(xcb_connection_t* connection, const WindowDescription& description);
    /// Destroys the window on the server.
    ~TestWindow();
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    xcb_window_t id() const { return id_; }

    void fill(PixelRect rect, std::uint32_t rgb);
    void moveResize(PixelRect rect);
    /// Above all its siblings, covering what lies below.
    void raise();
    void map();
    void unmap();

  private:
    xcb_connection_t* connection_;
    xcb_window_t id_;
    xcb_gcontext_t context_;
};

/// Also of a name that the server didn't know before.
xcb_atom_t atomNamed(xcb_connection_t* connection, const std::string& name);

/// Sets a property of one number of 32 bits.
void setNumber(xcb_connection_t* connection, xcb_window_t window, const std::string& property,
               xcb_atom_t type, std::uint32_t value);

}  // namespace tessaloom::test
