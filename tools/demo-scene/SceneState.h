// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <array>
#include <vector>

#include "demo-scene/Animated.h"
#include "demo-scene/Control.h"
#include "demo-scene/TextLine.h"
#include "demo-scene/Visit.h"

namespace tessaloom::demo {

/// What the form shows, saved or not.
struct Draft {
    std::array<TextLine, fieldCount> fields;
    VisitStatus status = VisitStatus::Planned;
    bool shared = false;
};

/// All that the scene shows is a function of this value; each user action is a call on it.
class SceneState {
  public:
    SceneState();

    // The pointer. A control of kind None stands for empty ground.
    void pointAt(ControlId control) { hovered_ = control; }
    void press(ControlId control);
    void release(ControlId control);

    // The keyboard.
    void type(const QString& text);
    void editFocused(void (TextLine::*action)());
    void moveCaret(int distance);
    void placeCaret(int fieldIndex, qsizetype position);
    void moveChoice(int distance);
    void focusNext();
    void confirm();
    void escape();
    void openPalette();
    void save();

    /// Lets time pass. True in `animating` as long as that changes anything.
    void advance(double seconds);
    bool animating() const;

    /// The animated area's next picture.
    void advanceBusyFrame() { ++busyFrame_; }

    // What there is to see.
    ControlId hovered() const { return hovered_; }
    ControlId pressed() const { return pressed_; }
    ControlId focused() const { return focused_; }
    int section() const { return section_; }
    int tab() const { return tab_; }
    int busyFrame() const { return busyFrame_; }
    bool modified() const;
    const Draft& draft() const { return draft_; }
    const Visit& selectedVisit() const { return visits_.at(static_cast<std::size_t>(selected_)); }
    /// The visit in a row of the list under the chosen tab; null for an empty row.
    const Visit* visitInRow(int row) const;
    bool rowSelected(int row) const;
    double sharedLevel() const { return sharedLevel_.value; }
    double menuLevel() const { return menuLevel_.value; }
    double paletteLevel() const { return paletteLevel_.value; }
    double toastLevel() const { return toastLevel_.value; }
    const QString& toastText() const { return toastText_; }
    const TextLine& paletteQuery() const { return paletteQuery_; }
    int paletteChoice() const { return paletteChoice_; }
    /// The commands that match the query, best first; at most paletteItemCount.
    QStringList paletteMatches() const;
    double hoursOn(int weekday) const { return hours_.at(static_cast<std::size_t>(weekday)).value; }
    int finishedCount() const;

  private:
    TextLine* focusedText();
    std::vector<int> listedVisits() const;
    void select(int visit);
    void load();
    void closePalette() { paletteLevel_.target = 0; }
    void runPaletteItem(int index);
    void showToast(const QString& text);
    void retargetHours();
    void activate(ControlId control);

    std::vector<Visit> visits_;
    int selected_ = 1;
    Draft draft_;
    ControlId hovered_;
    ControlId pressed_;
    ControlId focused_;
    int section_ = 1;
    int tab_ = 0;
    int busyFrame_ = 0;
    Animated sharedLevel_;
    Animated menuLevel_;
    Animated paletteLevel_;
    Animated toastLevel_;
    double toastSecondsLeft_ = 0;
    QString toastText_;
    TextLine paletteQuery_;
    int paletteChoice_ = 0;
    std::array<Animated, daysInWeek> hours_;
};

}  // namespace tessaloom::demo
