// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QImage>
#include <functional>

#include "demo-scene/SceneLook.h"
#include "demo-scene/ScenePainter.h"

namespace tessaloom::demo {
namespace {

constexpr QSize sceneSize(1920, 1080);

void paint(QImage& image, const SceneLayout& layout, const SceneState& state, const QRegion& region) {
    QPainter painter(&image);
    paintScene(painter, layout, state, region);
}

QImage pictureOf(const SceneLayout& layout, const SceneState& state) {
    QImage image(sceneSize, QImage::Format_RGB32);
    paint(image, layout, state, QRect({0, 0}, sceneSize));
    return image;
}

struct Action {
    const char* name;
    std::function<void(SceneState&)> act;
};

void clickOn(SceneState& state, ControlKind kind, int index = 0) {
    state.pointAt({kind, index});
    state.press({kind, index});
    state.release({kind, index});
}

std::vector<Action> actions() {
    return {
        {"hover a row",
         [](SceneState& state) {
             state.pointAt({ControlKind::Row, 3});
         }},
        {"press save",
         [](SceneState& state) {
             state.pointAt({ControlKind::Save, 0});
             state.press({ControlKind::Save, 0});
         }},
        {"select a row", [](SceneState& state) { clickOn(state, ControlKind::Row, 2); }},
        {"focus a field", [](SceneState& state) { clickOn(state, ControlKind::Field, TitleField); }},
        {"type", [](SceneState& state) { state.type("Otters"); }},
        {"select all", [](SceneState& state) { state.editFocused(&TextLine::selectAll); }},
        {"open the menu", [](SceneState& state) { clickOn(state, ControlKind::Status); }},
        {"fade", [](SceneState& state) { state.advance(0.05); }},
        {"faded", [](SceneState& state) { state.advance(1); }},
        {"choose", [](SceneState& state) { clickOn(state, ControlKind::MenuItem, 2); }},
        {"switch", [](SceneState& state) { clickOn(state, ControlKind::Toggle); }},
        {"slide", [](SceneState& state) { state.advance(0.05); }},
        {"save", [](SceneState& state) { state.save(); }},
        {"toast rises", [](SceneState& state) { state.advance(0.05); }},
        {"toast stands", [](SceneState& state) { state.advance(1); }},
        {"change the tab", [](SceneState& state) { clickOn(state, ControlKind::Tab, 1); }},
        {"open the palette", [](SceneState& state) { state.openPalette(); }},
        {"palette half", [](SceneState& state) { state.advance(0.08); }},
        {"palette whole", [](SceneState& state) { state.advance(0.5); }},
        {"search", [](SceneState& state) { state.type("so"); }},
        {"next match", [](SceneState& state) { state.moveChoice(1); }},
        {"find nothing", [](SceneState& state) { state.type("zzz"); }},
        {"escape", [](SceneState& state) { state.escape(); }},
        {"all quiet", [](SceneState& state) { state.advance(5); }},
    };
}

TEST(ScenePicture, RepaintingWhatChangedGivesTheWholeNewPicture) {
    const SceneLayout layout = SceneLayout::forSize(sceneSize, false);
    SceneState state;
    QImage shown = pictureOf(layout, state);
    for (const Action& action : actions()) {
        const SceneState before = state;
        action.act(state);
        const QRegion changed = changedArea(layout, before, state);
        if (!changed.isEmpty()) paint(shown, layout, state, changed);
        EXPECT_EQ(shown, pictureOf(layout, state)) << action.name;
    }
}

TEST(ScenePicture, TheSameStateNeedsNoPaint) {
    const SceneLayout layout = SceneLayout::forSize(sceneSize, false);
    const SceneState state;
    EXPECT_TRUE(changedArea(layout, state, state).isEmpty());
}

TEST(ScenePicture, AHoverRepaintsOnlyThatControl) {
    const SceneLayout layout = SceneLayout::forSize(sceneSize, false);
    const SceneState before;
    SceneState after = before;
    after.pointAt({ControlKind::Row, 3});
    const QRect row = layout.rectOf({ControlKind::Row, 3});
    EXPECT_TRUE(row.adjusted(-8, -8, 8, 8).contains(changedArea(layout, before, after).boundingRect()));
}

TEST(ScenePicture, EverythingLiesInsideTheSceneAtEachSize) {
    for (const QSize size : {QSize(1100, 680), QSize(1280, 720), QSize(1600, 900), QSize(2560, 1440)}) {
        const SceneLayout layout = SceneLayout::forSize(size, false);
        for (const Control& control : layout.controls) {
            EXPECT_TRUE(QRect({0, 0}, size).contains(control.rect))
                << qPrintable(nameOf(control.id)) << " at " << size.width();
            EXPECT_FALSE(control.rect.intersects(layout.counterStrip)) << qPrintable(nameOf(control.id));
        }
    }
}

}  // namespace
}  // namespace tessaloom::demo
