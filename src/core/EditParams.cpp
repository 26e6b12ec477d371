// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/EditParams.h"

#include "core/DecodeError.h"
#include "core/Json.h"
#include "core/LookFields.h"
#include "core/ZoomFields.h"

namespace tessaloom {

template <typename Coder, RecordOf<TrimRange> Record>
void fields(Coder& coder, Record& trim) {
    coder.field("start", trim.start);
    coder.field("end", trim.end);
}

template <typename Coder, RecordOf<TimeSegment> Record>
void fields(Coder& coder, Record& segment) {
    coder.required("start", segment.start);
    coder.required("end", segment.end);
}

template <typename Coder, RecordOf<CaptionWord> Record>
void fields(Coder& coder, Record& word) {
    coder.field("text", word.text);
    coder.required("start", word.start);
    coder.required("end", word.end);
}

template <typename Coder, RecordOf<Caption> Record>
void fields(Coder& coder, Record& caption) {
    coder.required("start", caption.start);
    coder.required("end", caption.end);
    coder.field("text", caption.text);
    coder.field("words", caption.words);
}

template <typename Coder, RecordOf<EditParams> Record>
void fields(Coder& coder, Record& edit) {
    coder.field("version", edit.version);
    coder.field("trim", edit.trim);
    coder.field("aspect", edit.aspect);
    coder.field("crop", edit.crop);
    coder.field("background", edit.background);
    coder.field("backgroundBlur", edit.backgroundBlur);
    coder.field("padding", edit.padding);
    coder.field("cornerRadius", edit.cornerRadius);
    coder.field("shadow", edit.shadow);
    coder.field("webcam", edit.webcam);
    coder.field("music", edit.music);
    coder.field("musicVolume", edit.musicVolume);
    coder.field("micVolume", edit.micVolume);
    coder.field("cursorVisible", edit.cursorVisible);
    coder.field("cursorScale", edit.cursorScale);
    coder.field("cursorSmoothing", edit.cursorSmoothing);
    coder.field("cursorBounce", edit.cursorBounce);
    coder.field("cursorHideIdle", edit.cursorHideIdle);
    coder.field("clickSounds", edit.clickSounds);
    coder.field("micEnhanced", edit.micEnhanced);
    coder.field("cursorStyle", edit.cursorStyle);
    coder.field("gifLoop", edit.gifLoop);
    coder.field("removeSilences", edit.removeSilences);
    coder.field("keptSegments", edit.keptSegments);
    coder.field("removeFillers", edit.removeFillers);
    coder.field("fillerRanges", edit.fillerRanges);
    coder.field("showKeystrokes", edit.showKeystrokes);
    coder.field("captions", edit.captions);
    coder.field("showCaptions", edit.showCaptions);
    coder.field("captionStyle", edit.captionStyle);
    coder.field("speed", edit.speed);
    coder.field("splitPoints", edit.splitPoints);
    coder.field("removedRanges", edit.removedRanges);
    coder.field("cameraHiddenRanges", edit.cameraHiddenRanges);
    coder.field("zoomKeyframes", edit.zoomKeyframes);
}

EditParams decodeEditParams(std::string_view json) {
    const auto document = parseJsonObject(json);
    if (!document) throw DecodeError("The edit is not a JSON object.");
    EditParams edit;
    readJson(*document, edit);
    return edit;
}

std::string encode(const EditParams& edit) {
    return encodePretty(edit);
}

}  // namespace tessaloom
