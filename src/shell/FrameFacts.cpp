// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/FrameFacts.h"

#include "core/Json.h"

namespace tessaloom {
namespace {

struct FrameFacts {
    double time = 0;
    CanvasSize canvas;
    Size cursorImageSize;
    Point cursorHotspot;
    FrameComposer::Frame frame;
};

/// The four floats it was made from.
std::optional<Float4> keepOutVector(const std::optional<Rect>& keepOut) {
    if (!keepOut) return std::nullopt;
    return toFloat4(*keepOut);
}

}  // namespace

bool writeJson(const Float4& vector, JsonValue& result, JsonAllocator& allocator) {
    result.SetArray();
    for (const float slot : {vector.x, vector.y, vector.z, vector.w}) {
        JsonValue number;
        writeJson(slot, number, allocator);
        result.PushBack(number, allocator);
    }
    return true;
}

template <typename Coder, RecordOf<CompositeUniforms> Record>
void fields(Coder& coder, Record& uniforms) {
    coder.field("a", uniforms.a);
    coder.field("b", uniforms.b);
    coder.field("c", uniforms.c);
    coder.field("bgTop", uniforms.bgTop);
    coder.field("bgBottom", uniforms.bgBottom);
    coder.field("d", uniforms.d);
}

template <typename Coder, RecordOf<CursorUniforms> Record>
void fields(Coder& coder, Record& cursor) {
    coder.field("rect", cursor.rect);
    coder.field("meta", cursor.meta);
    coder.field("content", cursor.content);
}

template <typename Coder, RecordOf<RippleUniforms> Record>
void fields(Coder& coder, Record& ripple) {
    coder.field("rect", ripple.rect);
    coder.field("params", ripple.params);
    coder.field("color", ripple.color);
    coder.field("meta", ripple.meta);
    coder.field("content", ripple.content);
}

template <typename Coder, RecordOf<WebcamUniforms> Record>
void fields(Coder& coder, Record& webcam) {
    coder.field("rect", webcam.rect);
    coder.field("params", webcam.params);
    coder.field("meta", webcam.meta);
    coder.field("border", webcam.border);
    coder.field("blur", webcam.blur);
}

template <typename Coder, RecordOf<KeystrokeChip> Record>
void fields(Coder& coder, Record& chip) {
    coder.field("text", chip.text);
    coder.fieldOrNull("alpha", chip.alpha);
}

template <typename Coder, RecordOf<CaptionChip> Record>
void fields(Coder& coder, Record& chip) {
    coder.field("text", chip.text);
    coder.fieldOrNull("alpha", chip.alpha);
    coder.field("activeWord", chip.activeWord);
    coder.fieldOrNull("fontScale", chip.fontScale);
    coder.field("colorHex", chip.colorHex);
    coder.field("bgHex", chip.bgHex);
    coder.fieldOrNull("bgAlpha", chip.bgAlpha);
    coder.fieldOrNull("verticalPosition", chip.verticalPosition);
    coder.field("highlight", chip.highlight);
    coder.field("highlightHex", chip.highlightHex);
    coder.field("plate", chip.plate);
    coder.field("uppercase", chip.uppercase);
}

namespace {

void fields(JsonWriter& writer, const FrameFacts& facts) {
    using Numbers = std::vector<double>;
    writer.fieldOrNull("time", facts.time);
    writer.field("canvas", std::vector<int>{facts.canvas.width, facts.canvas.height});
    writer.field("cursorImageSize", Numbers{facts.cursorImageSize.width, facts.cursorImageSize.height});
    writer.field("cursorHotspot", Numbers{facts.cursorHotspot.x, facts.cursorHotspot.y});
    writer.field("uniforms", facts.frame.uniforms);
    writer.field("cursor", facts.frame.cursor);
    writer.field("ripples", facts.frame.ripples);
    writer.field("webcam", facts.frame.webcam);
    writer.field("keystroke", facts.frame.keystroke);
    writer.field("caption", facts.frame.caption);
    writer.field("webcamKeepOut", keepOutVector(facts.frame.webcamKeepOut));
}

}  // namespace

std::string frameFacts(const FrameComposer& composer, const std::vector<double>& times, CanvasSize canvas) {
    std::vector<FrameFacts> facts;
    facts.reserve(times.size());
    for (const double time : times) {
        facts.push_back({time, canvas, composer.cursorImageSize, composer.cursorHotspot,
                         composer.composeFrame(time, canvas.width, canvas.height)});
    }
    return encodePretty(facts);
}

}  // namespace tessaloom
