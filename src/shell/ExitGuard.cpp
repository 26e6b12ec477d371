// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ExitGuard.h"

#include <cstdlib>

namespace tessaloom {

ExitGuard::ExitGuard(std::function<void()> finish) : finish_(std::move(finish)) {
    static const bool registered = std::atexit(runCurrent) == 0;
    if (registered) current = this;
}

ExitGuard::~ExitGuard() {
    if (current == this) current = nullptr;
}

void ExitGuard::runCurrent() {
    if (ExitGuard* guard = std::exchange(current, nullptr)) guard->finish_();
}

}  // namespace tessaloom
