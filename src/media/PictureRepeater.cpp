// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/PictureRepeater.h"

#include "media/H264Bits.h"

namespace tessaloom {
namespace {

constexpr int sliceUnit = 1;
constexpr int keySliceUnit = 5;
/// Between frames; the odd numbers are for fields.
constexpr std::uint32_t pictureOrderStep = 2;

std::uint32_t lowest(int bits, std::uint32_t value) {
    return value & ((1U << bits) - 1);
}

int kindOf(std::span<const std::uint8_t> unit) {
    return unit.front() & 0x1F;
}

bool isSlice(std::span<const std::uint8_t> unit) {
    return kindOf(unit) == sliceUnit || kindOf(unit) == keySliceUnit;
}

}  // namespace

std::vector<std::uint8_t> PictureRepeater::append(std::span<const std::uint8_t> picture) {
    pictureOrder_ += pictureOrderStep;
    std::vector<std::uint8_t> stream;
    stream.reserve(picture.size() + 64);
    for (const auto unit : unitsOfByteStream(picture)) {
        auto bytes = withoutEmulationPrevention(unit);
        if (isSlice(unit)) renumber(bytes);
        appendToByteStream(stream, bytes);
    }
    return stream;
}

std::vector<std::uint8_t> PictureRepeater::repeat() {
    pictureOrder_ += pictureOrderStep;
    std::vector<std::uint8_t> stream;
    appendToByteStream(stream,
                       skipPicture(sets_, {.frameNumber = nextFrameNumber_,
                                           .pictureOrder = lowest(sets_.pictureOrderBits, pictureOrder_)}));
    return stream;
}

void PictureRepeater::renumber(std::span<std::uint8_t> slice) {
    const bool isKey = kindOf(slice) == keySliceUnit;
    if (isKey) pictureOrder_ = 0;
    H264BitReader reader(slice.subspan(1));
    reader.unsignedNumber();  // first block
    reader.unsignedNumber();  // type
    reader.unsignedNumber();  // picture parameter set
    nextFrameNumber_ = lowest(sets_.frameNumberBits, reader.bits(sets_.frameNumberBits) + 1);
    if (isKey) reader.unsignedNumber();
    overwriteBits(slice.subspan(1), reader.position(), lowest(sets_.pictureOrderBits, pictureOrder_),
                  sets_.pictureOrderBits);
}

}  // namespace tessaloom
