// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/GifFile.h"

#include <fcntl.h>

#include <algorithm>
#include <bit>
#include <string_view>
#include <utility>

namespace tessaloom {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t blockToWrite = 1 << 18;

void appendByte(std::string& target, int byte) {
    target.push_back(static_cast<char>(byte));
}

void appendWord(std::string& target, int word) {
    appendByte(target, word & 0xFF);
    appendByte(target, word >> 8);
}

/// How many bits an index into a palette has, 2 to 8.
int indexBits(std::span<const std::uint32_t> palette) {
    return std::max(static_cast<int>(std::bit_width(palette.size() - 1)), 2);
}

/// A colour table, filled up to a power of two.
void appendPalette(std::string& target, std::span<const std::uint32_t> palette) {
    for (std::size_t i = 0; i < std::size_t{1} << indexBits(palette); ++i) {
        const std::uint32_t color = i < palette.size() ? palette[i] : 0;
        for (const int shift : {16, 8, 0})
            appendByte(target, static_cast<int>(color >> shift & 0xFF));
    }
}

}  // namespace

GifFile GifFile::create(const std::filesystem::path& path, bool loops) {
    return {FileDescriptor::open(path, O_WRONLY | O_CREAT | O_TRUNC), loops};
}

GifFile::GifFile(FileDescriptor file, bool loops) : file_(std::move(file)), loops_(loops) {}

void GifFile::writeHeader(const Frame& first) {
    globalPalette_.assign(first.palette.begin(), first.palette.end());
    pending_.append("GIF89a"sv);
    appendWord(pending_, first.area.width);
    appendWord(pending_, first.area.height);
    // A global colour table, of eight bits a channel; no background, square pixels.
    appendByte(pending_, 0x80 | 0x70 | (indexBits(first.palette) - 1));
    pending_.append("\0\0"sv);
    appendPalette(pending_, first.palette);
    if (loops_) pending_.append("\x21\xFF\x0BNETSCAPE2.0\x03\x01\0\0\0"sv);
}

void GifFile::append(const Frame& frame) {
    if (globalPalette_.empty()) writeHeader(frame);
    // Graphic control: leave the picture standing, one index is transparent.
    pending_.append("\x21\xF9\x04\x05"sv);
    appendWord(pending_, frame.delay);
    appendByte(pending_, frame.transparent);
    appendByte(pending_, 0);
    appendByte(pending_, 0x2C);
    for (const int number : {frame.area.x, frame.area.y, frame.area.width, frame.area.height})
        appendWord(pending_, number);
    const bool isGlobal = std::ranges::equal(frame.palette, globalPalette_);
    appendByte(pending_, isGlobal ? 0 : 0x80 | (indexBits(frame.palette) - 1));
    if (!isGlobal) appendPalette(pending_, frame.palette);
    encoder_.encode(frame.pixels, indexBits(frame.palette), pending_);
    if (pending_.size() >= blockToWrite) writeOut();
}

void GifFile::finish() {
    appendByte(pending_, 0x3B);
    writeOut();
}

void GifFile::writeOut() {
    file_.writeAll(pending_);
    pending_.clear();
}

}  // namespace tessaloom
