// SPDX-License-Identifier: GPL-3.0-or-later
#include "FuzzCheck.h"
#include "core/DecodeError.h"
#include "core/StylePreset.h"

// Whatever is read is written so that it reads back the same, and importing it leaves no two of one name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessaloom;
    try {
        const std::vector<StylePreset> presets = decodeStylePresets(fuzz::asText(data, size));
        fuzz::require(decodeStylePresets(encode(presets)) == presets);
        std::vector<StylePreset> imported;
        savePresets(presets, imported);
        const std::vector<StylePreset> once = imported;
        savePresets(once, imported);
        fuzz::require(imported == once);
    } catch (const DecodeError&) {
    }
    return 0;
}
