// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/LzwEncoder.h"

#include <algorithm>
#include <array>

namespace tessaloom {
namespace {

constexpr int mostCodeBits = 12;
constexpr int mostCodes = 1 << mostCodeBits;
/// Room for twice as many strings as there can be.
constexpr int slotBits = mostCodeBits + 1;
constexpr std::size_t slotCount = std::size_t{1} << slotBits;

/// Packs codes into bytes, lowest bit first, and bytes into sub-blocks of at most 255.
class CodeWriter {
  public:
    explicit CodeWriter(std::string& target) : target_(target) {}

    void write(int code, int bits) {
        pending_ |= static_cast<std::uint32_t>(code) << pendingBits_;
        for (pendingBits_ += bits; pendingBits_ >= 8; pendingBits_ -= 8) {
            writeByte(static_cast<char>(pending_));
            pending_ >>= 8;
        }
    }

    void finish() {
        if (pendingBits_ > 0) writeByte(static_cast<char>(pending_));
        writeBlock();
        target_.push_back('\0');
    }

  private:
    void writeByte(char byte) {
        block_[blockSize_++] = byte;
        if (blockSize_ == block_.size()) writeBlock();
    }

    void writeBlock() {
        if (blockSize_ == 0) return;
        target_.push_back(static_cast<char>(blockSize_));
        target_.append(block_.data(), blockSize_);
        blockSize_ = 0;
    }

    std::string& target_;
    std::array<char, 255> block_{};
    std::size_t blockSize_ = 0;
    std::uint32_t pending_ = 0;
    int pendingBits_ = 0;
};

std::uint32_t textOf(int prefix, std::uint8_t index) {
    return static_cast<std::uint32_t>(prefix) << 8 | index;
}

}  // namespace

LzwEncoder::LzwEncoder() : slots_(slotCount) {}

void LzwEncoder::clear() {
    if (++dictionary_ != 0) return;
    std::ranges::fill(slots_, Slot{});
    dictionary_ = 1;
}

/// Where this string is, or would go.
std::size_t LzwEncoder::slotOf(std::uint32_t text) const {
    std::size_t place = (text * 0x9E3779B1U) >> (32 - slotBits);
    while (slots_[place].dictionary == dictionary_ && slots_[place].text != text)
        place = (place + 1) % slotCount;
    return place;
}

std::optional<int> LzwEncoder::find(int prefix, std::uint8_t index) const {
    const Slot& slot = slots_[slotOf(textOf(prefix, index))];
    return slot.dictionary == dictionary_ ? std::optional<int>(slot.code) : std::nullopt;
}

void LzwEncoder::add(int prefix, std::uint8_t index, int code) {
    const std::uint32_t text = textOf(prefix, index);
    slots_[slotOf(text)] = {text, dictionary_, static_cast<std::uint16_t>(code)};
}

void LzwEncoder::encode(std::span<const IndexedPixel> pixels, int bitsPerPixel, std::string& target) {
    const int clearCode = 1 << bitsPerPixel;
    const int endCode = clearCode + 1;
    int codeBits = bitsPerPixel + 1;
    int nextCode = endCode + 1;
    target.push_back(static_cast<char>(bitsPerPixel));
    CodeWriter codes(target);
    codes.write(clearCode, codeBits);
    clear();
    int known = pixels.front().index;
    for (const IndexedPixel& pixel : pixels.subspan(1)) {
        auto longer = find(known, pixel.index);
        if (!longer && pixel.alternative != pixel.index) longer = find(known, pixel.alternative);
        if (longer) {
            known = *longer;
            continue;
        }
        codes.write(known, codeBits);
        if (nextCode == mostCodes) {
            codes.write(clearCode, codeBits);
            clear();
            codeBits = bitsPerPixel + 1;
            nextCode = endCode + 1;
        } else {
            if (nextCode == 1 << codeBits) ++codeBits;
            add(known, pixel.index, nextCode++);
        }
        known = pixel.index;
    }
    codes.write(known, codeBits);
    if (nextCode == 1 << codeBits && codeBits < mostCodeBits) ++codeBits;
    codes.write(endCode, codeBits);
    codes.finish();
}

}  // namespace tessaloom
