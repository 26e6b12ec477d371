// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/H264Bits.h"

#include <algorithm>
#include <array>
#include <bit>

namespace tessaloom {
namespace {

constexpr std::array<std::uint8_t, 3> startCode{0, 0, 1};
constexpr std::uint8_t emulationPrevention = 3;

}  // namespace

std::uint32_t H264BitReader::bits(int count) {
    std::uint32_t value = 0;
    for (; count > 0; --count, ++position_) {
        const std::size_t index = position_ / 8;
        const unsigned byte = index < bytes_.size() ? bytes_[index] : 0U;
        value = value << 1 | (byte >> (7 - position_ % 8) & 1U);
    }
    return value;
}

std::uint32_t H264BitReader::unsignedNumber() {
    int zeros = 0;
    while (zeros < 31 && !flag())
        ++zeros;
    return (1U << zeros) - 1 + bits(zeros);
}

std::int32_t H264BitReader::signedNumber() {
    const std::uint32_t code = unsignedNumber();
    const auto magnitude = static_cast<std::int32_t>(code / 2 + code % 2);
    return code % 2 != 0 ? magnitude : -magnitude;
}

void H264BitWriter::bits(std::uint32_t value, int count) {
    while (count-- > 0) {
        if (freeBits_ == 0) {
            bytes_.push_back(0);
            freeBits_ = 8;
        }
        --freeBits_;
        bytes_.back() = static_cast<std::uint8_t>(bytes_.back() | (value >> count & 1U) << freeBits_);
    }
}

void H264BitWriter::unsignedNumber(std::uint32_t value) {
    const int length = std::bit_width(value + 1);
    bits(0, length - 1);
    bits(value + 1, length);
}

void H264BitWriter::signedNumber(std::int32_t value) {
    unsignedNumber(static_cast<std::uint32_t>(value > 0 ? 2 * value - 1 : -2 * value));
}

void H264BitWriter::align(bool value) {
    while (freeBits_ > 0)
        flag(value);
}

void overwriteBits(std::span<std::uint8_t> bytes, std::size_t position, std::uint32_t value, int count) {
    for (; count > 0; ++position) {
        const unsigned mask = 0x80U >> position % 8;
        std::uint8_t& byte = bytes[position / 8];
        const bool set = (value >> --count & 1U) != 0;
        byte = static_cast<std::uint8_t>(set ? byte | mask : byte & ~mask);
    }
}

std::vector<std::span<const std::uint8_t>> unitsOfByteStream(std::span<const std::uint8_t> stream) {
    std::vector<std::span<const std::uint8_t>> units;
    const auto nextCode = [&](auto from) {
        return std::search(from, stream.end(), startCode.begin(), startCode.end());
    };
    for (auto code = nextCode(stream.begin()); code != stream.end();) {
        const auto begin = code + startCode.size();
        code = nextCode(begin);
        auto end = code;
        // Zeros before a start code belong to it: a unit never ends with one.
        while (end > begin && *(end - 1) == 0)
            --end;
        if (end > begin) units.emplace_back(begin, end);
    }
    return units;
}

std::vector<std::uint8_t> withoutEmulationPrevention(std::span<const std::uint8_t> unit) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(unit.size());
    int zeros = 0;
    for (const std::uint8_t byte : unit) {
        const bool inserted = zeros >= 2 && byte == emulationPrevention;
        zeros = byte == 0 ? zeros + 1 : 0;
        if (!inserted) bytes.push_back(byte);
    }
    return bytes;
}

void appendToByteStream(std::vector<std::uint8_t>& stream, std::span<const std::uint8_t> unit) {
    stream.push_back(0);
    stream.insert(stream.end(), startCode.begin(), startCode.end());
    int zeros = 0;
    for (const std::uint8_t byte : unit) {
        if (zeros >= 2 && byte <= emulationPrevention) {
            stream.push_back(emulationPrevention);
            zeros = 0;
        }
        stream.push_back(byte);
        zeros = byte == 0 ? zeros + 1 : 0;
    }
}

}  // namespace tessaloom
