// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/SceneState.h"

#include <gtest/gtest.h>

#include "demo-scene/KeyBindings.h"

namespace tessaloom::demo {
namespace {

void click(SceneState& state, ControlId control) {
    state.press(control);
    state.release(control);
}

void pressKey(SceneState& state, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
              const QString& text = {}) {
    applyKey(state, QKeyEvent(QEvent::KeyPress, key, modifiers, text));
}

QString textOf(const SceneState& state, FieldIndex field) {
    return state.draft().fields.at(field).text();
}

TEST(SceneState, TypingReplacesWhatControlASelected) {
    SceneState state;
    click(state, {ControlKind::Field, TitleField});
    pressKey(state, Qt::Key_A, Qt::ControlModifier);
    pressKey(state, Qt::Key_H, Qt::ShiftModifier, "H");
    pressKey(state, Qt::Key_I, Qt::NoModifier, "i");
    EXPECT_EQ(textOf(state, TitleField), "Hi");
    pressKey(state, Qt::Key_Backspace);
    EXPECT_EQ(textOf(state, TitleField), "H");
}

TEST(SceneState, TypingWithoutAFocusedFieldGoesNowhere) {
    SceneState state;
    pressKey(state, Qt::Key_X, Qt::NoModifier, "x");
    EXPECT_FALSE(state.modified());
}

TEST(SceneState, SavingPutsTheDraftInTheListAndShowsAToastThatGoesAway) {
    SceneState state;
    click(state, {ControlKind::Field, TitleField});
    pressKey(state, Qt::Key_A, Qt::ControlModifier);
    state.type("Herons");
    EXPECT_TRUE(state.modified());
    pressKey(state, Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(state.modified());
    EXPECT_EQ(state.visitInRow(1)->title, "Herons");
    state.advance(0.5);
    EXPECT_EQ(state.toastLevel(), 1);
    for (int frame = 0; frame < 300; ++frame)
        state.advance(0.016);
    EXPECT_EQ(state.toastLevel(), 0);
    EXPECT_FALSE(state.animating());
}

TEST(SceneState, DiscardBringsTheSavedVisitBack) {
    SceneState state;
    const QString saved = textOf(state, TitleField);
    click(state, {ControlKind::Field, TitleField});
    state.type("!");
    click(state, {ControlKind::MenuItem, 0});
    click(state, {ControlKind::Discard, 0});
    EXPECT_EQ(textOf(state, TitleField), saved);
    EXPECT_FALSE(state.modified());
}

TEST(SceneState, AClickCountsOnlyWhereItBegan) {
    SceneState state;
    state.press({ControlKind::Row, 4});
    state.release({ControlKind::Row, 5});
    EXPECT_TRUE(state.rowSelected(1));
    click(state, {ControlKind::Row, 4});
    EXPECT_TRUE(state.rowSelected(4));
}

TEST(SceneState, ThePaletteOpensAPersonByName) {
    SceneState state;
    pressKey(state, Qt::Key_K, Qt::ControlModifier);
    state.type("sofia");
    ASSERT_EQ(state.paletteMatches(), QStringList{"Open Sofia Rossi"});
    pressKey(state, Qt::Key_Return);
    EXPECT_EQ(state.selectedVisit().person, "Sofia Rossi");
    state.advance(1);
    EXPECT_EQ(state.paletteLevel(), 0);
}

TEST(SceneState, EscapeClosesThePaletteAndChangesNothing) {
    SceneState state;
    pressKey(state, Qt::Key_K, Qt::ControlModifier);
    state.type("sofia");
    pressKey(state, Qt::Key_Escape);
    state.advance(1);
    EXPECT_EQ(state.paletteLevel(), 0);
    EXPECT_TRUE(state.rowSelected(1));
}

TEST(SceneState, TheTabsFilterTheList) {
    SceneState state;
    click(state, {ControlKind::Tab, 2});
    for (int row = 0; state.visitInRow(row) != nullptr; ++row) {
        EXPECT_TRUE(state.visitInRow(row)->status >= VisitStatus::Ready) << row;
    }
    EXPECT_NE(state.visitInRow(state.finishedCount() - 1), nullptr);
    EXPECT_EQ(state.visitInRow(state.finishedCount()), nullptr);
}

}  // namespace
}  // namespace tessaloom::demo
