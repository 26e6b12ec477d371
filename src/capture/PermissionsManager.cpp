// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/PermissionsManager.h"

#include <utility>

namespace tessaloom {

PermissionsManager::PermissionsManager(std::function<Statuses()> read) : read_(std::move(read)) {
    refresh();
}

PermissionsManager PermissionsManager::unrestricted() {
    return PermissionsManager(
        [] { return Statuses{.microphone = Status::granted, .camera = Status::granted}; });
}

void PermissionsManager::refresh() {
    statuses_ = read_();
}

}  // namespace tessaloom
