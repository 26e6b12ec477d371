// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/DemoPlayer.h"

#include <QJsonArray>
#include <QStringList>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <map>
#include <stdexcept>
#include <thread>
#include <utility>

#include "base/HostClock.h"
#include "demo-scene/PointerPath.h"

namespace tessaloom::demo {
namespace {

constexpr int leftButton = 1;
constexpr double clickSeconds = 0.08;

std::runtime_error unknown(const char* what, const QString& name) {
    return std::runtime_error("There is no " + std::string(what) + ' ' + name.toStdString());
}

std::optional<QPointF> pointFrom(const QString& text) {
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 2) return std::nullopt;
    bool xValid = false;
    bool yValid = false;
    const QPointF point(parts[0].toDouble(&xValid), parts[1].toDouble(&yValid));
    if (!xValid || !yValid) return std::nullopt;
    return point;
}

}  // namespace

DemoPlayer::DemoPlayer(const std::string& displayName, QJsonObject geometry, JsonLines& log)
    : injector_(displayName), keyboard_(injector_.keyboard()), geometry_(std::move(geometry)), log_(log) {}

void DemoPlayer::play(const Step& step) {
    switch (step.kind) {
        case StepKind::Move:
            moveTo(targetOf(step.argument));
            break;
        case StepKind::Click:
            moveTo(targetOf(step.argument));
            rest(between(0.09, 0.16));
            click();
            rest(between(0.12, 0.2));
            break;
        case StepKind::Type:
            type(step.argument);
            break;
        case StepKind::Key:
            pressCombination(step.argument);
            break;
        case StepKind::Wait:
            rest(step.argument.toDouble());
            break;
    }
}

DemoPlayer::Target DemoPlayer::targetOf(const QString& name) {
    constexpr double pointSize = 16;
    if (const auto point = pointFrom(name)) return {*point, pointSize};
    const QJsonArray rect = geometry_.value(name).toArray();
    if (rect.size() != 4) throw unknown("control", name);
    const double width = rect[2].toDouble();
    const double height = rect[3].toDouble();
    // Nobody hits the very middle, and wide things are taken by their left half.
    const double x = rect[0].toDouble() + std::min(width * between(0.45, 0.6), between(150, 190));
    const double y = rect[1].toDouble() + height * between(0.52, 0.68);
    return {{std::round(x), std::round(y)}, std::min(width, height)};
}

void DemoPlayer::moveTo(const Target& target) {
    const test::ScreenPoint from = injector_.pointer();
    const auto start = std::chrono::steady_clock::now();
    for (const PathPoint& point : handPath(QPointF(from.x, from.y), target.point, target.size, random_)) {
        std::this_thread::sleep_until(start + std::chrono::duration<double>(point.seconds));
        injector_.moveTo({static_cast<int>(std::lround(point.position.x())),
                          static_cast<int>(std::lround(point.position.y()))});
        record("motion", 0);
    }
}

void DemoPlayer::click() {
    injector_.press(leftButton);
    record("press", leftButton);
    rest(clickSeconds);
    injector_.release(leftButton);
    record("release", leftButton);
}

void DemoPlayer::type(const QString& text) {
    for (const char32_t character : text.toStdU32String()) {
        const auto stroke = keyboard_.forCharacter(character);
        if (!stroke) throw unknown("key for", QString::fromUcs4(&character, 1));
        const xcb_keycode_t shift = keyNamed("Shift_L");
        if (stroke->shift) keyDown(shift);
        keyDown(stroke->keycode);
        rest(between(0.03, 0.05));
        keyUp(stroke->keycode);
        if (stroke->shift) keyUp(shift);
        rest(character == U' ' ? between(0.09, 0.16) : between(0.03, 0.09));
    }
}

void DemoPlayer::pressCombination(const QString& combination) {
    static const std::map<QString, std::string> modifiers{
        {"Ctrl", "Control_L"}, {"Shift", "Shift_L"}, {"Alt", "Alt_L"}, {"Super", "Super_L"}};
    QStringList names = combination.split(QLatin1Char('+'));
    std::vector<xcb_keycode_t> keys;
    const test::KeyStroke last = strokeOf(names.takeLast());
    for (const QString& name : std::as_const(names)) {
        const auto modifier = modifiers.find(name);
        if (modifier == modifiers.end()) throw unknown("modifier", name);
        keys.push_back(keyNamed(modifier->second));
    }
    keys.push_back(last.keycode);
    for (const xcb_keycode_t key : keys) {
        keyDown(key);
        rest(between(0.05, 0.08));
    }
    std::for_each(keys.rbegin(), keys.rend(), [&](xcb_keycode_t key) { keyUp(key); });
    rest(between(0.12, 0.2));
}

test::KeyStroke DemoPlayer::strokeOf(const QString& key) const {
    const bool character = key.size() == 1;
    const auto stroke = character ? keyboard_.forCharacter(key.at(0).toLower().unicode())
                                  : keyboard_.forSymbolName(key.toStdString());
    if (!stroke) throw unknown("key", key);
    return *stroke;
}

xcb_keycode_t DemoPlayer::keyNamed(const std::string& symbolName) const {
    const auto stroke = keyboard_.forSymbolName(symbolName);
    if (!stroke) throw unknown("key", QString::fromStdString(symbolName));
    return stroke->keycode;
}

void DemoPlayer::keyDown(xcb_keycode_t keycode) {
    injector_.pressKey(keycode);
    record("keyDown", keycode);
}

void DemoPlayer::keyUp(xcb_keycode_t keycode) {
    injector_.releaseKey(keycode);
    record("keyUp", keycode);
}

void DemoPlayer::record(const char* kind, int detail) {
    const double now = HostClock::seconds();
    const test::ScreenPoint pointer = injector_.pointer();
    log_.write({{"host", now},
                {"kind", QLatin1String(kind)},
                {"x", pointer.x},
                {"y", pointer.y},
                {"detail", detail}});
}

double DemoPlayer::between(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random_);
}

void DemoPlayer::rest(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

}  // namespace tessaloom::demo
