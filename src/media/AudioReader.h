// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

#include "media/StereoSample.h"

namespace tessaloom {

/// The first sound track of a media file as stereo samples at `soundRate`, each at its exact place: counted
/// from the file's time zero by the stored times, with what an encoder puts in front left out. Mono sounds on
/// both sides at its own level. Holes in the track and damaged parts are silent. Used by one thread at a
/// time.
class AudioReader {
  public:
    /// Throws NoAudioTrack, and UnreadableMovie with the system's reason when the file can't be opened.
    static std::unique_ptr<AudioReader> open(const std::filesystem::path& path);
    ~AudioReader();

    /// Fills `target` with the sound from `position` on, in samples; before time zero there is silence.
    /// Returns how many samples there were up to the track's end; the rest of `target` is silent. Going on
    /// from the last read costs least. Throws UnreadableMovie with the reason when the
    /// sound can't be converted or the file can't be read on.
    std::size_t read(std::int64_t position, std::span<StereoSample> target);

  private:
    struct Source;

    explicit AudioReader(std::filesystem::path path, std::unique_ptr<Source> source);
    bool reachesByReadingOn(std::int64_t position) const;
    void seek(std::int64_t position);
    bool startAt(std::int64_t position);
    void forgetChunk();
    bool decodeMore();
    void takeFrame();
    std::int64_t chunkEnd() const;

    std::filesystem::path path_;
    std::unique_ptr<Source> source_;
    /// What was decoded last, and where it begins.
    std::vector<StereoSample> chunk_;
    std::int64_t chunkStart_ = 0;
    std::int64_t readUpTo_ = 0;
    bool ended_ = false;
};

}  // namespace tessaloom
