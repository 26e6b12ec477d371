// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/PermissionsManager.h"

#include <QProcess>
#include <algorithm>
#include <array>
#include <utility>

namespace tessaloom {
namespace {

using enum Permission;
using enum PermissionStatus;

constexpr std::array readingOrder{screenRecording, microphone, camera, accessibility, speech};
/// These a program can use as soon as they are granted.
constexpr std::array immediateOnes{microphone, camera, speech};

/// Tells the program's next instance to go on with the introduction.
constexpr const char* resumeKey = "resumeOnboarding";

/// Under which it is remembered that the desktop has asked; null where it tells by itself.
const char* askedKey(Permission permission) {
    if (permission == screenRecording) return "askedScreenRecording";
    if (permission == accessibility) return "askedAccessibility";
    return nullptr;
}

bool isUndecided(PermissionStatus status) {
    return status == unknown || status == notDetermined;
}

}  // namespace

PermissionsManager::PermissionsManager(Defaults defaults, PermissionSystem& system)
    : defaults_(std::move(defaults)),
      system_(system),
      askedScreenAtLaunch_(wasAsked(screenRecording)),
      askedAccessibilityAtLaunch_(wasAsked(accessibility)) {
    refresh();
}

bool PermissionsManager::allSettled() const {
    return std::ranges::none_of(readingOrder, [this](Permission each) { return isUndecided(status(each)); });
}

bool PermissionsManager::hasUndecided() const {
    return std::ranges::any_of(immediateOnes, [this](Permission each) { return isUndecided(status(each)); });
}

void PermissionsManager::refresh() {
    for (const Permission permission : readingOrder)
        statuses_[permission] = read(permission);
    Q_EMIT refreshed();
}

PermissionStatus PermissionsManager::read(Permission permission) {
    const PermissionStatus status = system_.status(permission);
    if (askedKey(permission) == nullptr || status == granted) return status;
    const bool asked = permission == screenRecording ? askedScreenAtLaunch_ : askedAccessibilityAtLaunch_;
    return asked ? denied : notDetermined;
}

QCoro::Task<> PermissionsManager::request(Permission permission) {
    co_await system_.ask(permission);
    rememberAsked(permission);
    refresh();
}

QCoro::Task<> PermissionsManager::requestNext() {
    if (!isGranted(accessibility) && !wasAsked(accessibility)) {
        co_await request(accessibility);
    } else if (!isGranted(screenRecording)) {
        co_await request(screenRecording);
    } else {
        const auto next =
            std::ranges::find(immediateOnes, notDetermined, [this](Permission each) { return status(each); });
        if (next != immediateOnes.end()) co_await request(*next);
    }
}

bool PermissionsManager::openPane(PrivacyPane pane) {
    return pane != PrivacyPane::none && system_.openPane(pane);
}

QCoro::Task<bool> PermissionsManager::resetScreenAndAccessibility() {
    const bool screenIsReset = co_await reset(screenRecording, askedScreenAtLaunch_);
    const bool inputIsReset = co_await reset(accessibility, askedAccessibilityAtLaunch_);
    refresh();
    co_return screenIsReset&& inputIsReset;
}

/// Nobody has been asked, as far as the desktop knows.
QCoro::Task<bool> PermissionsManager::reset(Permission permission, bool& askedAtLaunch) {
    const bool isForgotten = co_await system_.forget(permission);
    if (isForgotten) {
        defaults_.remove(askedKey(permission));
        askedAtLaunch = false;
    }
    co_return isForgotten;
}

std::optional<std::string> PermissionsManager::relaunch(const QString& program) {
    defaults_.setBoolean(resumeKey, true);
    QProcess next;
    next.setProgram(program);
    if (next.startDetached()) {
        QCoreApplication::quit();
        return std::nullopt;
    }
    defaults_.remove(resumeKey);
    return next.errorString().toStdString() +
           "\n\nQuit and open it again yourself to finish granting permission.";
}

void PermissionsManager::screenWasLookedAt() {
    if (!wasAsked(screenRecording)) rememberAsked(screenRecording);
}

bool PermissionsManager::wasAsked(Permission permission) const {
    return defaults_.boolean(askedKey(permission)).value_or(false);
}

void PermissionsManager::rememberAsked(Permission permission) {
    if (const char* key = askedKey(permission)) defaults_.setBoolean(key, true);
}

}  // namespace tessaloom
