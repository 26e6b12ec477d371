// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include "export/Exporter.h"
#include "shell/CommandError.h"

namespace tessaloom {

/// `tessaloom frame`: draws the frame at one source time into a PNG file and prints the file's path. Throws
/// CommandError, UsageError and MediaError.
ExitStatus runFrameCommand(const QStringList& words, const Exporter::RendererFactory& makeRenderer);

}  // namespace tessaloom
