// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <filesystem>
#include <optional>

#include "export/TakeExport.h"

namespace tessaloom {

enum class ExportFormat { mp4, gif };

/// ".mp4" or ".gif".
const char* extensionOf(ExportFormat format);

/// What `tessaloom export` was asked for.
struct ExportArguments {
    QString bundle;
    std::optional<std::filesystem::path> destination;
    ExportFormat format = ExportFormat::mp4;
    ExportChoices choices;

    /// Throws UsageError.
    static ExportArguments parse(const QStringList& words);
};

}  // namespace tessaloom
