// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace tessaloom {

/// Names the rasters of texts for their caches. The views that it returns are valid until the next call of
/// the same function; asked again for the same, it allocates nothing.
class TextRasterKeys {
  public:
    std::string_view captionLine(std::string_view text, std::string_view colorHex, bool uppercase);
    std::string_view wordChip(std::string_view text, std::string_view colorHex, bool uppercase);

  private:
    /// The last key and what it was made of.
    struct Key {
        std::string text;
        std::string colorHex;
        bool uppercase = false;
        std::string key;
    };

    static std::string_view make(Key& last, std::string_view prefix, std::string_view text,
                                 std::string_view colorHex, bool uppercase);

    Key line_;
    Key word_;
};

}  // namespace tessaloom
