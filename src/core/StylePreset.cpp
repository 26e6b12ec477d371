// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/StylePreset.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "core/CaseFolding.h"
#include "core/DecodeError.h"
#include "core/Json.h"
#include "core/LookFields.h"

namespace tessaloom {
namespace {

/// Hands over each value of a look with its counterpart in the edit.
template <typename Preset, typename Edit, typename Visit>
void forEachPair(Preset& preset, Edit& edit, Visit visit) {
    visit(preset.aspect, edit.aspect);
    visit(preset.background, edit.background);
    visit(preset.backgroundBlur, edit.backgroundBlur);
    visit(preset.padding, edit.padding);
    visit(preset.cornerRadius, edit.cornerRadius);
    visit(preset.shadow, edit.shadow);
    visit(preset.cursorVisible, edit.cursorVisible);
    visit(preset.cursorStyle, edit.cursorStyle);
    visit(preset.cursorScale, edit.cursorScale);
    visit(preset.cursorSmoothing, edit.cursorSmoothing);
    visit(preset.cursorBounce, edit.cursorBounce);
    visit(preset.keystrokesVisible, edit.showKeystrokes);
    visit(preset.showCaptions, edit.showCaptions);
    visit(preset.captionStyle, edit.captionStyle);
    visit(preset.music, edit.music);
    visit(preset.musicVolume, edit.musicVolume);
    visit(preset.micVolume, edit.micVolume);
    visit(preset.webcam, edit.webcam);
}

}  // namespace

template <typename Coder, RecordOf<StylePreset> Record>
void fields(Coder& coder, Record& preset) {
    coder.field("id", preset.id);
    coder.field("name", preset.name);
    coder.field("aspect", preset.aspect);
    coder.field("background", preset.background);
    coder.field("backgroundBlur", preset.backgroundBlur);
    coder.field("padding", preset.padding);
    coder.field("cornerRadius", preset.cornerRadius);
    coder.field("shadow", preset.shadow);
    coder.field("cursorVisible", preset.cursorVisible);
    coder.field("cursorStyle", preset.cursorStyle);
    coder.field("cursorScale", preset.cursorScale);
    coder.field("cursorSmoothing", preset.cursorSmoothing);
    coder.field("cursorBounce", preset.cursorBounce);
    coder.field("keystrokesVisible", preset.keystrokesVisible);
    coder.field("showCaptions", preset.showCaptions);
    coder.field("captionStyle", preset.captionStyle);
    coder.field("music", preset.music);
    coder.field("musicVolume", preset.musicVolume);
    coder.field("micVolume", preset.micVolume);
    coder.field("webcam", preset.webcam);
}

StylePreset capturePreset(std::string name, const EditParams& edit) {
    StylePreset preset;
    preset.name = std::move(name);
    forEachPair(preset, edit, [](auto& look, const auto& edited) { look = edited; });
    return preset;
}

void applyPreset(const StylePreset& preset, EditParams& edit) {
    forEachPair(preset, edit, [](const auto& look, auto& edited) { edited = look; });
}

void savePresets(std::vector<StylePreset> added, std::vector<StylePreset>& presets) {
    std::unordered_map<std::string, std::size_t> places;
    for (std::size_t place = 0; place < presets.size(); ++place)
        places.emplace(caseFolded(presets[place].name), place);
    for (StylePreset& preset : added) {
        const auto [namesake, isNew] = places.emplace(caseFolded(preset.name), presets.size());
        if (isNew) {
            presets.push_back(std::move(preset));
        } else {
            preset.id = presets[namesake->second].id;
            presets[namesake->second] = std::move(preset);
        }
    }
}

void deletePreset(const Uuid& id, std::vector<StylePreset>& presets) {
    std::erase_if(presets, [&id](const StylePreset& each) { return each.id == id; });
}

std::vector<StylePreset> decodeStylePresets(std::string_view json) {
    const auto document = parseJson(json);
    const auto isObject = [](const JsonValue& element) { return element.IsObject(); };
    if (!document || !document->IsArray() || !std::ranges::all_of(document->GetArray(), isObject))
        throw DecodeError("The presets are not a JSON array of objects.");
    std::vector<StylePreset> presets;
    readJson(*document, presets);
    return presets;
}

std::string encode(const std::vector<StylePreset>& presets) {
    return encodeCompact(presets);
}

}  // namespace tessaloom
