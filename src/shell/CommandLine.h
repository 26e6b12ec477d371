// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

#include "capture/CapturePlatform.h"
#include "capture/RecordingDevices.h"
#include "media/HardwareEncoding.h"
#include "render/Renderer.h"
#include "shell/CommandError.h"

namespace tessaloom {

/// What the commands need of the machine they run on.
struct CommandServices {
    CapturePlatform& capture;
    RecordingDevices& devices;
    std::function<std::unique_ptr<Renderer>()> makeRenderer;
    std::vector<HardwareEncoding> hardwareEncodings;
};

/// Runs one command of the command line (without the program's name). Results go to stdout, everything else
/// to stderr. Main thread.
ExitStatus runCommandLine(const QStringList& arguments, const CommandServices& services);

}  // namespace tessaloom
