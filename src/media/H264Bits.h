// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tessaloom {

/// Reads the fields of an H.264 header: bits from the highest down, and the numbers of variable length.
/// Behind the end there are zeros.
class H264BitReader {
  public:
    explicit H264BitReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    /// Up to 32 bits.
    std::uint32_t bits(int count);
    bool flag() { return bits(1) != 0; }
    /// "ue(v)" and "se(v)": Exp-Golomb numbers without and with a sign.
    std::uint32_t unsignedNumber();
    std::int32_t signedNumber();

    /// Counted in bits.
    std::size_t position() const { return position_; }
    bool ranOut() const { return position_ > bytes_.size() * 8; }

  private:
    std::span<const std::uint8_t> bytes_;
    std::size_t position_ = 0;
};

/// The same fields written.
class H264BitWriter {
  public:
    void bits(std::uint32_t value, int count);
    void flag(bool value) { bits(value ? 1 : 0, 1); }
    void unsignedNumber(std::uint32_t value);
    void signedNumber(std::int32_t value);
    /// Fills the last byte up.
    void align(bool value);

    const std::vector<std::uint8_t>& bytes() const { return bytes_; }

  private:
    std::vector<std::uint8_t> bytes_;
    int freeBits_ = 0;  ///< of the last byte
};

/// Replaces `count` bits at `position`, counted in bits.
void overwriteBits(std::span<std::uint8_t> bytes, std::size_t position, std::uint32_t value, int count);

/// The units of a byte stream, without their start codes. They refer to it.
std::vector<std::span<const std::uint8_t>> unitsOfByteStream(std::span<const std::uint8_t> stream);

/// A unit without the bytes that keep start codes from occurring in it.
std::vector<std::uint8_t> withoutEmulationPrevention(std::span<const std::uint8_t> unit);

/// Appends a unit to a byte stream, with a start code and those bytes.
void appendToByteStream(std::vector<std::uint8_t>& stream, std::span<const std::uint8_t> unit);

}  // namespace tessaloom
