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

OutputHandle openOutput(const std::string& path, MovieWriter::Container container) {
    quietLibav();
    const char* format = container == MovieWriter::Container::mp4 ? "mp4" : "mov";
    AVFormatContext* output = nullptr;
    requireLibav(avformat_alloc_output_context2(&output, nullptr, format, path.c_str()), writeProblem);
    OutputHandle handle(output);
    requireLibav(avio_open(&output->pb, path.c_str(), AVIO_FLAG_WRITE), writeProblem);
    return handle;
}

LibavHandle<AVDictionary> muxerOptions(const MovieWriter::Settings& settings) {
    AVDictionary* options = nullptr;
    // Fine enough to say exactly when a track begins that doesn't begin at zero.
    av_dict_set_int(&options, "movie_timescale", movieTimescale, 0);
    if (settings.container == MovieWriter::Container::mp4) {
        av_dict_set(&options, "movflags", "faststart", 0);
    } else {
        // The delayed index knows the first frame's time; without the delay no edit list is written.
        av_dict_set(&options, "movflags", "frag_custom+empty_moov+delay_moov+default_base_moof", 0);
        av_dict_set_int(&options, "video_track_timescale", settings.video.timescale, 0);
    }
    return LibavHandle<AVDictionary>(options);
}

}  // namespace

struct MovieWriter::File {
    OutputHandle output;
    AVStream* pictures = nullptr;
    AVStream* sound = nullptr;
};

std::unique_ptr<MovieWriter> MovieWriter::create(const std::filesystem::path& path,
                                                 const Settings& settings) {
    auto file = std::make_unique<File>(File{openOutput(path.string(), settings.container)});
    AVFormatContext* output = file->output.get();
    if (settings.container == Container::fragmentedMovie) output->flags |= AVFMT_FLAG_FLUSH_PACKETS;
    file->pictures = avformat_new_stream(output, nullptr);
    file->pictures->time_base = {1, settings.video.timescale};
    if (settings.sound) {
        file->sound = avformat_new_stream(output, nullptr);
        file->sound->time_base = {1, soundRate};
    }

    std::unique_ptr<MovieWriter> writer(new MovieWriter(settings, std::move(file)));
    writer->encoder_.copyParameters(*writer->file_->pictures->codecpar);
    if (settings.sound) writer->soundEncoder_->copyParameters(*writer->file_->sound->codecpar);
    AVDictionary* options = muxerOptions(settings).release();
    const int result = avformat_write_header(output, &options);
    const LibavHandle<AVDictionary> unused(options);
    requireLibav(result, writeProblem);
    return writer;
}

MovieWriter::MovieWriter(const Settings& settings, std::unique_ptr<File> file)
    : settings_(settings), encoder_(settings.video), file_(std::move(file)) {
    if (settings.sound) soundEncoder_.emplace();
}

MovieWriter::~MovieWriter() = default;

void MovieWriter::appendVideo(const YuvImage& image, double time, double duration) {
    if (fragmentStart_ && time - *fragmentStart_ >= longestFragment) flush();
    if (!fragmentStart_) beginFragment(time);
    const double timescale = settings_.video.timescale;
    lastDuration_ = std::llround(duration * timescale);
    encoder_.encode(image, std::llround(time * timescale),
                    [this](AVPacket& packet) { writePicture(packet); });
}

void MovieWriter::appendSound(std::span<const StereoSample> sound) {
    soundEncoder_->encode(sound, [this](AVPacket& packet) { writeSound(packet); });
}

void MovieWriter::flush() {
    if (settings_.container == Container::mp4 || !fragmentStart_) return;
    cutFragment();
    // The first cut only writes the delayed index.
    if (!indexWritten_) cutFragment();
    indexWritten_ = true;
    fragmentStart_.reset();
}

void MovieWriter::finish() {
    encoder_.finish([this](AVPacket& packet) { writePicture(packet); });
    if (soundEncoder_) soundEncoder_->finish([this](AVPacket& packet) { writeSound(packet); });
    flush();
    AVFormatContext* output = file_->output.get();
    requireLibav(av_write_trailer(output), writeProblem);
    requireLibav(avio_closep(&output->pb), writeProblem);
}

void MovieWriter::writePicture(AVPacket& packet) {
    packet.duration = lastDuration_;
    packet.stream_index = file_->pictures->index;
    av_packet_rescale_ts(&packet, {1, settings_.video.timescale}, file_->pictures->time_base);
    writePacket(packet);
}

void MovieWriter::writeSound(AVPacket& packet) {
    packet.stream_index = file_->sound->index;
    av_packet_rescale_ts(&packet, {1, soundRate}, file_->sound->time_base);
    writePacket(packet);
}

void MovieWriter::writePacket(AVPacket& packet) {
    AVFormatContext* output = file_->output.get();
    const bool twoTracks = file_->sound != nullptr;
    requireLibav(twoTracks ? av_interleaved_write_frame(output, &packet) : av_write_frame(output, &packet),
                 writeProblem);
}

void MovieWriter::beginFragment(double time) {
    fragmentStart_ = time;
    if (settings_.container == Container::mp4) return;
    // Or else the muxer moves the fragment to where the last one's pictures ended.
    requireLibav(av_opt_set(file_->output->priv_data, "movflags", "+frag_discont", 0), writeProblem);
}

void MovieWriter::cutFragment() {
    requireLibav(av_write_frame(file_->output.get(), nullptr), writeProblem);
}

}  // namespace tessaloom
