// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "core/AspectPreset.h"
#include "export/CanvasSize.h"
#include "export/Exporter.h"
#include "export/QualityPreset.h"
#include "export/ResolutionPreset.h"
#include "take/OpenTake.h"

namespace tessaloom {

/// What a user chooses for one export, beyond the edit itself.
struct ExportChoices {
    ResolutionPreset resolution = ResolutionPreset::p1080;
    QualityPreset quality = QualityPreset::high;
    std::optional<AspectPreset> shape{};  ///< the edit's when absent
    int gifFPS = 15;
    std::optional<bool> gifLoop{};  ///< the edit's when absent
};

/// The canvas's width over its height.
double canvasAspect(const OpenTake& take, const ExportChoices& choices);

/// The export of a take as it stands now: later changes to it don't reach the settings. `movieDuration` in
/// seconds counts only for a take with an empty log.
Exporter::Settings exportSettings(const OpenTake& take, const ExportChoices& choices, double movieDuration);

}  // namespace tessaloom
