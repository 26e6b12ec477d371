// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <filesystem>
#include <optional>

#include "export/TakeExport.h"

namespace tessaloom {

/// What `tessaloom export` was asked for.
struct ExportArguments {
    QString bundle;
    std::optional<std::filesystem::path> destination;
    ExportChoices choices;

    /// Throws UsageError.
    static ExportArguments parse(const QStringList& words);
};

}  // namespace tessaloom
