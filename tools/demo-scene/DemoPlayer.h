// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QPointF>
#include <QString>
#include <random>
#include <string>

#include "demo-scene/DemoScript.h"
#include "demo-scene/JsonLines.h"
#include "support/XInjector.h"

namespace tessaloom::demo {

/// Carries out steps with real input events at a person's pace, and logs each event as
/// {"host": seconds, "kind": "motion" | "press" | "release" | "keyDown" | "keyUp", "x", "y", "detail"} once
/// the server has it. `detail` is the button or the key code. The same steps give the same events each time.
class DemoPlayer {
  public:
    /// `geometry` maps control names to [x, y, width, height]; it may be empty. Throws std::runtime_error
    /// when the display can't be used.
    DemoPlayer(const std::string& displayName, QJsonObject geometry, JsonLines& log);

    /// Throws std::runtime_error for a name the geometry lacks or a key the layout lacks.
    void play(const Step& step);

  private:
    struct Target {
        QPointF point;
        double size;
    };

    Target targetOf(const QString& name);
    void moveTo(const Target& target);
    void click();
    void type(const QString& text);
    void pressCombination(const QString& combination);
    test::KeyStroke strokeOf(const QString& key) const;
    xcb_keycode_t keyNamed(const std::string& symbolName) const;
    void keyDown(xcb_keycode_t keycode);
    void keyUp(xcb_keycode_t keycode);
    void record(const char* kind, int detail);
    double between(double low, double high);
    void rest(double seconds);

    test::XInjector injector_;
    test::KeyboardMap keyboard_;
    QJsonObject geometry_;
    JsonLines& log_;
    std::mt19937 random_{1};
};

}  // namespace tessaloom::demo
