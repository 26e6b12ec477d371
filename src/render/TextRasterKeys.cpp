// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/TextRasterKeys.h"

#include "render/ShownText.h"

namespace tessaloom {
namespace {

/// Between the fields of a key; no text that is shown contains it.
constexpr char separator = '\x01';

}  // namespace

std::string_view TextRasterKeys::captionLine(std::string_view text, std::string_view colorHex,
                                             bool uppercase) {
    return make(line_, "", text, colorHex, uppercase);
}

std::string_view TextRasterKeys::wordChip(std::string_view text, std::string_view colorHex, bool uppercase) {
    constexpr std::string_view prefix{"wc\x01"};
    return make(word_, prefix, text, colorHex, uppercase);
}

std::string_view TextRasterKeys::make(Key& last, std::string_view prefix, std::string_view text,
                                      std::string_view colorHex, bool uppercase) {
    const bool isLast =
        last.text == text && last.colorHex == colorHex && last.uppercase == uppercase && !last.key.empty();
    if (isLast) return last.key;
    last.text = text;
    last.colorHex = colorHex;
    last.uppercase = uppercase;
    last.key.assign(prefix).append(colorHex).push_back(separator);
    last.key.append(uppercase ? "true" : "false").push_back(separator);
    last.key.append(shownText(text, uppercase));
    return last.key;
}

}  // namespace tessaloom
