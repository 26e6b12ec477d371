// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/MovieWriter.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <cmath>

#include "media/LibavHandles.h"

namespace tessaloom {
namespace {

constexpr double longestFragment = 4.0;
constexpr int movieTimescale = 90'000;

struct OutputDelete {
    void operator()(AVFormatContext* output) const {
        avio_closep(&output->pb);
        avformat_free_context(output);
    }
};
using OutputHandle = std::unique_ptr<AVFormatContext, OutputDelete>;

constexpr auto writeProblem = "The movie can't be written";

const char* muxerName(MovieWriter::Container container) {
    switch (container) {
        case MovieWriter::Container::fragmentedMovie:
            return "mov";
        case MovieWriter::Container::fragmentedSound:
            return "ipod";
        case MovieWriter::Container::mp4:
            break;
    }
    return "mp4";
}

OutputHandle openOutput(const std::string& path, MovieWriter::Container container) {
    quietLibav();
    AVFormatContext* output = nullptr;
    requireLibav(avformat_alloc_output_context2(&output, nullptr, muxerName(container), path.c_str()),
                 writeProblem);
    OutputHandle handle(output);
    requireLibav(avio_open(&output->pb, path.c_str(), AVIO_FLAG_WRITE), writeProblem);
    if (container != MovieWriter::Container::mp4) output->flags |= AVFMT_FLAG_FLUSH_PACKETS;
    // Or else sound goes ahead where pictures stay in the encoder for long, as those of a scene at rest do.
    output->max_interleave_delta = 0;
    return handle;
}

LibavHandle<AVDictionary> muxerOptions(const MovieWriter::Settings& settings) {
    AVDictionary* options = nullptr;
    // Fine enough to say exactly when a track begins that doesn't begin at zero.
    av_dict_set_int(&options, "movie_timescale", movieTimescale, 0);
    if (settings.container == MovieWriter::Container::mp4) {
        av_dict_set(&options, "movflags", "faststart", 0);
        return LibavHandle<AVDictionary>(options);
    }
    // The delayed index knows each track's first time; without the delay no edit list is written.
    av_dict_set(&options, "movflags", "frag_custom+empty_moov+delay_moov+default_base_moof", 0);
    if (settings.video) av_dict_set_int(&options, "video_track_timescale", settings.video->timescale, 0);
    return LibavHandle<AVDictionary>(options);
}

}  // namespace

struct MovieWriter::File {
    /// A track, and the encoder's clock that its packets come with.
    struct Track {
        AVStream* stream = nullptr;
        AVRational timeBase{};
        bool begun = false;

        /// Whether there is no such track, or it has a packet.
        bool ready() const { return stream == nullptr || begun; }
    };

    OutputHandle output;
    /// Whether packets wait for those of the other track that come before them. Fragments don't: they are to
    /// hold all that there is.
    bool interleaves = false;
    Track video;
    Track sound;

    Track addTrack(int timescale) const {
        AVStream* stream = avformat_new_stream(output.get(), nullptr);
        stream->time_base = {1, timescale};
        return {.stream = stream, .timeBase = stream->time_base};
    }

    void write(AVPacket& packet, Track& track) const {
        packet.stream_index = track.stream->index;
        av_packet_rescale_ts(&packet, track.timeBase, track.stream->time_base);
        requireLibav(interleaves ? av_interleaved_write_frame(output.get(), &packet)
                                 : av_write_frame(output.get(), &packet),
                     writeProblem);
        track.begun = true;
    }
};

std::unique_ptr<MovieWriter> MovieWriter::create(const std::filesystem::path& path,
                                                 const Settings& settings) {
    auto file = std::make_unique<File>(File{.output = openOutput(path.string(), settings.container),
                                            .interleaves = settings.container == Container::mp4,
                                            .video = {},
                                            .sound = {}});
    AVFormatContext* output = file->output.get();
    std::unique_ptr<MovieWriter> writer(new MovieWriter(settings, std::move(file)));
    writer->openTracks();
    AVDictionary* options = muxerOptions(settings).release();
    const int result = avformat_write_header(output, &options);
    const LibavHandle<AVDictionary> unused(options);
    requireLibav(result, writeProblem);
    return writer;
}

MovieWriter::MovieWriter(const Settings& settings, std::unique_ptr<File> file)
    : settings_(settings), file_(std::move(file)) {}

MovieWriter::~MovieWriter() = default;

void MovieWriter::openTracks() {
    if (settings_.video) {
        video_.emplace(*settings_.video);
        file_->video = file_->addTrack(settings_.video->timescale);
        video_->copyParameters(*file_->video.stream->codecpar);
    }
    if (settings_.sound) {
        sound_.emplace(*settings_.sound);
        file_->sound = file_->addTrack(settings_.sound->sampleRate);
        sound_->copyParameters(*file_->sound.stream->codecpar);
    }
}

void MovieWriter::appendVideo(const YuvImage& image, double time, double duration, PictureMotion motion) {
    reachTime(time);
    const double timescale = settings_.video->timescale;
    lastDuration_ = std::llround(duration * timescale);
    video_->encode(image, std::llround(time * timescale), motion,
                   [this](AVPacket& packet) { writeVideo(packet); });
}

void MovieWriter::appendSound(std::span<const float> samples) {
    const AacSettings& sound = *settings_.sound;
    reachTime(static_cast<double>(soundFrames_) / sound.sampleRate);
    soundFrames_ += static_cast<std::int64_t>(samples.size()) / sound.channels;
    sound_->encode(samples, [this](AVPacket& packet) { writeSound(packet); });
}

bool MovieWriter::flush() {
    if (settings_.container == Container::mp4 || !fragmentStart_) return false;
    // The index tells where each track begins, and is written only once.
    if (!file_->video.ready() || !file_->sound.ready()) return false;
    cutFragment();
    // The first cut only writes the delayed index.
    if (!indexWritten_) cutFragment();
    indexWritten_ = true;
    fragmentStart_.reset();
    return true;
}

void MovieWriter::finish() {
    if (video_) video_->finish([this](AVPacket& packet) { writeVideo(packet); });
    if (sound_) sound_->finish([this](AVPacket& packet) { writeSound(packet); });
    flush();
    AVFormatContext* output = file_->output.get();
    requireLibav(av_write_trailer(output), writeProblem);
    requireLibav(avio_closep(&output->pb), writeProblem);
}

void MovieWriter::writeVideo(AVPacket& packet) {
    packet.duration = lastDuration_;
    file_->write(packet, file_->video);
}

void MovieWriter::writeSound(AVPacket& packet) {
    file_->write(packet, file_->sound);
}

/// Opens a fragment for what comes next, which has this time.
void MovieWriter::reachTime(double time) {
    if (fragmentStart_ && time - *fragmentStart_ >= longestFragment) flush();
    if (fragmentStart_) return;
    fragmentStart_ = time;
    // Or else the muxer moves a fragment to where the last one's pictures ended. The first one has none
    // before.
    if (!indexWritten_) return;
    requireLibav(av_opt_set(file_->output->priv_data, "movflags", "+frag_discont", 0), writeProblem);
}

void MovieWriter::cutFragment() {
    requireLibav(av_write_frame(file_->output.get(), nullptr), writeProblem);
}

}  // namespace tessaloom
