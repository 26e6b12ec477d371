// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/SkipPicture.h"

#include <algorithm>
#include <array>

#include "media/H264Bits.h"

// The syntax is that of ITU-T H.264: a slice's header in 7.3.3, its data in 7.3.4, the arithmetic coder
// in 9.3.4.
namespace tessaloom {
namespace {

constexpr std::uint32_t unreferencedSlice = 1;  // nal_ref_idc 0, nal_unit_type 1
constexpr std::uint32_t predictedOnly = 5;      // the slice type of which all slices of the picture are
/// The coarsest. Nothing is quantised, and the coder then begins where skipping is as cheap as can be.
constexpr int quantiser = 51;

/// The coder's state for "this block is skipped" at the start of such a slice, by table 9-13.
constexpr int initialState = ((23 * quantiser) >> 4) + 33 - 64;
constexpr int lastState = 62;

/// Table 9-44, from the initial state on: how much of a range is for the improbable, by the range's quarter.
constexpr std::array<std::array<std::uint32_t, 4>, lastState - initialState + 1> improbable{{
    {16, 20, 23, 27}, {15, 19, 22, 25}, {14, 18, 21, 24}, {14, 17, 20, 23}, {13, 16, 19, 22},
    {12, 15, 18, 21}, {12, 14, 17, 20}, {11, 14, 16, 19}, {11, 13, 15, 18}, {10, 12, 15, 17},
    {10, 12, 14, 16}, {9, 11, 13, 15},  {9, 11, 12, 14},  {8, 10, 12, 14},  {8, 9, 11, 13},
    {7, 9, 11, 12},   {7, 9, 10, 12},   {7, 8, 10, 11},   {6, 8, 9, 11},    {6, 7, 9, 10},
    {6, 7, 8, 9},
}};

/// Writes the data of a slice in which each block is skipped: the probable decision, over and over.
class SkippedBlocks {
  public:
    explicit SkippedBlocks(H264BitWriter& writer) : writer_(writer) {}

    void write(int count) {
        for (int block = 0; block < count; ++block) {
            skip();
            endSlice(block == count - 1);
        }
    }

  private:
    void skip() {
        range_ -= improbable[state_][range_ >> 6 & 3U];
        state_ = std::min(state_ + 1, improbable.size() - 1);
        renormalise();
    }

    void endSlice(bool end) {
        range_ -= 2;
        if (!end) return renormalise();
        low_ += range_;
        range_ = 2;
        renormalise();
        put((low_ >> 9 & 1U) != 0);
        // The last bit written is the one that ends every unit.
        writer_.bits((low_ >> 7 & 3U) | 1U, 2);
        writer_.align(false);
    }

    void renormalise() {
        for (; range_ < 256; range_ <<= 1, low_ <<= 1) {
            if (low_ < 256) {
                put(false);
            } else if (low_ >= 512) {
                low_ -= 512;
                put(true);
            } else {
                low_ -= 256;
                ++outstanding_;
            }
        }
    }

    void put(bool bit) {
        if (!first_) writer_.flag(bit);
        first_ = false;
        for (; outstanding_ > 0; --outstanding_)
            writer_.flag(!bit);
    }

    H264BitWriter& writer_;
    std::uint32_t low_ = 0;
    std::uint32_t range_ = 510;
    std::size_t state_ = 0;
    int outstanding_ = 0;
    bool first_ = true;
};

void writeHeader(H264BitWriter& writer, const H264ParameterSets& sets, H264PictureNumbers numbers) {
    writer.bits(unreferencedSlice, 8);
    writer.unsignedNumber(0);  // first block
    writer.unsignedNumber(predictedOnly);
    writer.unsignedNumber(sets.pictureParameterSet);
    writer.bits(numbers.frameNumber, sets.frameNumberBits);
    writer.bits(numbers.pictureOrder, sets.pictureOrderBits);
    writer.flag(true);         // a number of pictures to predict from, of its own:
    writer.unsignedNumber(0);  // one
    writer.flag(false);        // the last
    if (sets.weightedPrediction) {
        writer.unsignedNumber(0);
        writer.unsignedNumber(0);
        writer.flag(false);
        writer.flag(false);
    }
    writer.unsignedNumber(0);  // the coder's table
    writer.signedNumber(quantiser - sets.initialQuantiser);
    if (sets.deblockingControl) writer.unsignedNumber(1);  // none
    writer.align(true);
}

}  // namespace

std::vector<std::uint8_t> skipPicture(const H264ParameterSets& sets, H264PictureNumbers numbers) {
    H264BitWriter writer;
    writeHeader(writer, sets, numbers);
    SkippedBlocks(writer).write(sets.macroblocks);
    return writer.bytes();
}

}  // namespace tessaloom
