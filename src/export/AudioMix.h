// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "core/TakeBundle.h"
#include "export/Exporter.h"
#include "media/SoundSource.h"

namespace tessaloom {

/// All that is heard in an exported movie, ready to be pulled from its first sample on, within full scale.
struct AudioMix {
    std::unique_ptr<SoundSource> sound;
    /// Samples to pull.
    std::int64_t length = 0;
};

/// The recording's own sound and its microphone, cut and at the speed of the picture, with music and click
/// sounds as the settings say. Nothing when none of them has a sound track. Throws MediaError for a file that
/// is there and can't be read; a missing click sound is left out.
std::optional<AudioMix> makeAudioMix(const TakeBundle& bundle, const Exporter::Settings& settings);

}  // namespace tessaloom
