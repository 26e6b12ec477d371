// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/H264ParameterSets.h"

#include "media/H264Bits.h"

namespace tessaloom {
namespace {

constexpr int sequenceSetUnit = 7;
constexpr int pictureSetUnit = 8;
constexpr std::uint32_t highProfile = 100;

/// Goes over the fields that only the high profile has; false where they say something unusual.
bool readHighProfile(H264BitReader& reader) {
    const bool plainChroma = reader.unsignedNumber() == 1;
    const bool eightBits = reader.unsignedNumber() == 0 && reader.unsignedNumber() == 0;
    const bool transformBypass = reader.flag();
    const bool scalingMatrix = reader.flag();
    return plainChroma && eightBits && !transformBypass && !scalingMatrix;
}

bool readSequenceSet(H264BitReader reader, H264ParameterSets& sets) {
    const std::uint32_t profile = reader.bits(8);
    reader.bits(16);  // constraints and level
    reader.unsignedNumber();
    if (profile > highProfile || (profile == highProfile && !readHighProfile(reader))) return false;
    sets.frameNumberBits = static_cast<int>(reader.unsignedNumber()) + 4;
    if (reader.unsignedNumber() != 0) return false;
    sets.pictureOrderBits = static_cast<int>(reader.unsignedNumber()) + 4;
    reader.unsignedNumber();  // reference frames
    reader.flag();
    const std::uint32_t columns = reader.unsignedNumber() + 1;
    const std::uint32_t rows = reader.unsignedNumber() + 1;
    sets.macroblocks = static_cast<int>(columns * rows);
    const bool wholeFrames = reader.flag();
    return wholeFrames && !reader.ranOut();
}

bool readPictureSet(H264BitReader reader, H264ParameterSets& sets) {
    sets.pictureParameterSet = reader.unsignedNumber();
    reader.unsignedNumber();
    const bool arithmeticCoding = reader.flag();
    const bool orderOfFields = reader.flag();
    const bool oneSliceGroup = reader.unsignedNumber() == 0;
    if (!arithmeticCoding || orderOfFields || !oneSliceGroup) return false;
    reader.unsignedNumber();
    reader.unsignedNumber();
    sets.weightedPrediction = reader.flag();
    reader.bits(2);
    sets.initialQuantiser = reader.signedNumber() + 26;
    reader.signedNumber();
    reader.signedNumber();
    sets.deblockingControl = reader.flag();
    reader.flag();
    const bool redundantPictures = reader.flag();
    return !redundantPictures && !reader.ranOut();
}

}  // namespace

std::optional<H264ParameterSets> H264ParameterSets::read(std::span<const std::uint8_t> stream) {
    H264ParameterSets sets;
    int understood = 0;
    for (const auto unit : unitsOfByteStream(stream)) {
        const int kind = unit.front() & 0x1F;
        if (kind != sequenceSetUnit && kind != pictureSetUnit) continue;
        const auto bytes = withoutEmulationPrevention(unit);
        const H264BitReader reader({bytes.data() + 1, bytes.size() - 1});
        if (!(kind == sequenceSetUnit ? readSequenceSet(reader, sets) : readPictureSet(reader, sets)))
            return std::nullopt;
        ++understood;
    }
    if (understood != 2) return std::nullopt;
    return sets;
}

}  // namespace tessaloom
