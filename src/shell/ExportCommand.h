// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include "export/Exporter.h"
#include "shell/CommandError.h"

namespace tessaloom {

/// `tessaloom export`: makes a video or a GIF of a recording and prints its path. Throws CommandError,
/// UsageError, and what the exporter throws.
ExitStatus runExportCommand(const QStringList& words, const Exporter::RendererFactory& makeRenderer,
                            const std::vector<HardwareEncoding>& hardwareEncodings);

}  // namespace tessaloom
