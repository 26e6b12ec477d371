// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/H264Encoder.h"

extern "C" {
#include <libavutil/intreadwrite.h>
}

#include <algorithm>
#include <cmath>
#include <limits>

#include "media/LibavHandles.h"
#include "media/SurfaceUpload.h"

namespace tessaloom {

struct H264Encoder::Codec {
    explicit Codec(const H264Settings& settings);

    std::optional<SurfaceUpload> surfaces;
    LibavHandle<AVCodecContext> context;
    LibavHandle<AVFrame> frame{av_frame_alloc()};
    LibavHandle<AVPacket> packet{av_packet_alloc()};
};

namespace {

constexpr int coarsestQuantiser = 51;

/// A picture that came to rest after a movement, which was coarse, gets nearly all its detail in as many
/// more.
constexpr int refinementsAfterMovement = 3;

/// In seconds, as long as the rate control has too few bits for a picture at rest: what it saves in between
/// makes the next one finer.
constexpr double refinementInterval = 0.15;

LibavHandle<AVDictionary> dictionary(const H264Settings& settings) {
    AVDictionary* options = nullptr;
    for (const auto& [name, value] : settings.options)
        av_dict_set(&options, name.c_str(), value.c_str(), 0);
    return LibavHandle<AVDictionary>(options);
}

std::optional<SurfaceUpload> openSurfaces(const H264Settings& settings) {
    if (!settings.surfaces) return std::nullopt;
    return SurfaceUpload::open(*settings.surfaces, settings.width, settings.height);
}

LibavHandle<AVCodecContext> openEncoder(const H264Settings& settings,
                                        const std::optional<SurfaceUpload>& surfaces) {
    const AVCodec* encoder = avcodec_find_encoder_by_name(settings.encoder.c_str());
    if (encoder == nullptr) throw EncodingError("This FFmpeg has no " + settings.encoder + " encoder.");
    LibavHandle<AVCodecContext> context(avcodec_alloc_context3(encoder));
    context->width = settings.width;
    context->height = settings.height;
    context->pix_fmt = AV_PIX_FMT_YUV420P;
    if (surfaces) surfaces->announceTo(*context);
    context->time_base = {1, settings.timescale};
    // The rate only guides the encoder's bit budget; frame times may be as uneven as they like.
    context->framerate = {60, 1};
    context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    AVDictionary* options = dictionary(settings).release();
    const int result = avcodec_open2(context.get(), encoder, &options);
    const LibavHandle<AVDictionary> unused(options);
    requireLibav<EncodingError>(result, "The video encoder can't be opened");
    return context;
}

/// Lends a plane to the frame without a copy: the encoder copies the picture while it takes the frame.
void lendPlanes(AVFrame& frame, const YuvImage& image) {
    for (int plane = 0; plane < 3; ++plane) {
        frame.data[plane] = const_cast<std::uint8_t*>(image.plane(plane));
        frame.linesize[plane] = static_cast<int>(image.stride(plane));
    }
    const auto size = static_cast<std::size_t>(image.stride(0)) * static_cast<std::size_t>(image.height());
    constexpr auto keepPixels = [](void*, std::uint8_t*) {};
    frame.buf[0] = av_buffer_create(frame.data[0], size, keepPixels, nullptr, AV_BUFFER_FLAG_READONLY);
    frame.format = AV_PIX_FMT_YUV420P;
    frame.width = image.width();
    frame.height = image.height();
}

/// Asks for a quantiser that is `steps` coarser (or finer, below zero) than the rate control's, everywhere in
/// the picture.
void shiftQuantiser(AVFrame& frame, int steps) {
    AVFrameSideData* data =
        av_frame_new_side_data(&frame, AV_FRAME_DATA_REGIONS_OF_INTEREST, sizeof(AVRegionOfInterest));
    if (data == nullptr) return;
    *reinterpret_cast<AVRegionOfInterest*>(data->data) = {.self_size = sizeof(AVRegionOfInterest),
                                                          .top = 0,
                                                          .bottom = frame.height,
                                                          .left = 0,
                                                          .right = frame.width,
                                                          .qoffset = {steps, coarsestQuantiser}};
}

/// The rate control's quantiser for a packet's picture.
std::optional<int> quantiserOf(const AVPacket& packet) {
    std::size_t size = 0;
    const std::uint8_t* statistics = av_packet_get_side_data(&packet, AV_PKT_DATA_QUALITY_STATS, &size);
    if (statistics == nullptr || size < sizeof(std::uint32_t)) return std::nullopt;
    return static_cast<int>(AV_RL32(statistics)) / FF_QP2LAMBDA;
}

std::optional<PictureRepeater> makeRepeater(const H264Settings& settings, const AVCodecContext& context) {
    if (!settings.predictsForwardOnly || context.extradata == nullptr) return std::nullopt;
    const auto sets =
        H264ParameterSets::read({context.extradata, static_cast<std::size_t>(context.extradata_size)});
    if (!sets) return std::nullopt;
    return PictureRepeater(*sets);
}

}  // namespace

H264Encoder::Codec::Codec(const H264Settings& settings)
    : surfaces(openSurfaces(settings)), context(openEncoder(settings, surfaces)) {}

H264Encoder::H264Encoder(const H264Settings& settings)
    : settings_(settings),
      keyFrameTicks_(std::llround(settings.keyFrameInterval * settings.timescale)),
      refinementTicks_(std::llround(refinementInterval * settings.timescale)),
      refinements_(refinementsAfterMovement),
      codec_(std::make_unique<Codec>(settings)),
      repeater_(makeRepeater(settings, *codec_->context)) {}

H264Encoder::~H264Encoder() = default;

void H264Encoder::copyParameters(AVCodecParameters& target) const {
    // Players find the parameter sets in the container alone.
    if (codec_->context->extradata_size == 0)
        throw EncodingError("The encoder doesn't describe the video stream.");
    requireLibav<EncodingError>(avcodec_parameters_from_context(&target, codec_->context.get()),
                                "The video stream can't be described");
}

void H264Encoder::encode(const YuvImage& image, std::int64_t ticks, PictureMotion motion,
                         const PacketSink& sink) {
    if (motion == PictureMotion::none && mayRepeat(ticks)) return repeats_.push_back(ticks);
    countRefinements(motion);
    lastEncoded_ = ticks;
    AVFrame& frame = *codec_->frame;
    if (codec_->surfaces)
        codec_->surfaces->upload(image, frame);
    else
        lendPlanes(frame, image);
    frame.pts = ticks;
    choosePrediction(frame);
    const int finer = frame.pict_type == AV_PICTURE_TYPE_I ? settings_.finerKeyFrames : 0;
    if (const int steps = coarsening(motion) - finer; steps != 0) shiftQuantiser(frame, steps);
    const int result = avcodec_send_frame(codec_->context.get(), &frame);
    av_frame_unref(&frame);
    requireLibav<EncodingError>(result, "A video frame can't be encoded");
    drain(sink);
}

void H264Encoder::finish(const PacketSink& sink) {
    requireLibav<EncodingError>(avcodec_send_frame(codec_->context.get(), nullptr),
                                "The video can't be completed");
    drain(sink);
    repeatUntil(std::numeric_limits<std::int64_t>::max(), sink);
}

bool H264Encoder::keyFrameIsDue(std::int64_t ticks) const {
    return keyFrameTicks_ > 0 && (!lastKeyFrame_ || ticks - *lastKeyFrame_ >= keyFrameTicks_);
}

void H264Encoder::choosePrediction(AVFrame& frame) {
    frame.pict_type = settings_.predictsForwardOnly ? AV_PICTURE_TYPE_P : AV_PICTURE_TYPE_NONE;
    if (!keyFrameIsDue(frame.pts)) return;
    frame.pict_type = AV_PICTURE_TYPE_I;
    lastKeyFrame_ = frame.pts;
}

int H264Encoder::coarsening(PictureMotion motion) const {
    if (!settings_.finestQuantisers || !wantedQuantiser_) return 0;
    const auto [still, moving] = *settings_.finestQuantisers;
    return std::max((motion == PictureMotion::moving ? moving : still) - *wantedQuantiser_, 0);
}

bool H264Encoder::mayRepeat(std::int64_t ticks) const {
    if (!repeater_ || !lastEncoded_ || refinements_ > 0 || keyFrameIsDue(ticks)) return false;
    return isAsFineAsUseful() || ticks - *lastEncoded_ < refinementTicks_;
}

bool H264Encoder::isAsFineAsUseful() const {
    return !settings_.finestQuantisers ||
           (wantedQuantiser_ && *wantedQuantiser_ <= settings_.finestQuantisers->still);
}

void H264Encoder::countRefinements(PictureMotion motion) {
    if (motion == PictureMotion::moving)
        refinements_ = refinementsAfterMovement;
    else if (motion == PictureMotion::none)
        refinements_ = std::max(refinements_ - 1, 0);
}

void H264Encoder::learnFrom(const AVPacket& packet) {
    if ((packet.flags & AV_PKT_FLAG_KEY) != 0)
        lastKeyFrame_ = std::max(lastKeyFrame_.value_or(packet.pts), packet.pts);
    if (settings_.finestQuantisers) wantedQuantiser_ = quantiserOf(packet);
}

void H264Encoder::drain(const PacketSink& sink) {
    AVPacket& packet = *codec_->packet;
    for (;;) {
        const int result = avcodec_receive_packet(codec_->context.get(), &packet);
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return;
        requireLibav<EncodingError>(result, "A video frame can't be encoded");
        learnFrom(packet);
        passOn(packet, sink);
        av_packet_unref(&packet);
    }
}

void H264Encoder::passOn(AVPacket& packet, const PacketSink& sink) {
    if (!repeater_) return sink(packet);
    repeatUntil(packet.pts, sink);
    const auto bytes = repeater_->append({packet.data, static_cast<std::size_t>(packet.size)});
    put(bytes, packet.pts, packet.flags, sink);
}

void H264Encoder::repeatUntil(std::int64_t ticks, const PacketSink& sink) {
    for (; !repeats_.empty() && repeats_.front() < ticks; repeats_.pop_front())
        put(repeater_->repeat(), repeats_.front(), 0, sink);
}

void H264Encoder::put(std::span<const std::uint8_t> bytes, std::int64_t ticks, int flags,
                      const PacketSink& sink) {
    const LibavHandle<AVPacket> packet(av_packet_alloc());
    requireLibav<EncodingError>(av_new_packet(packet.get(), static_cast<int>(bytes.size())),
                                "A video frame can't be stored");
    std::ranges::copy(bytes, packet->data);
    packet->pts = ticks;
    // Pictures come in order, but the stream's header allows for as many that don't.
    packet->dts = ticks - codec_->context->has_b_frames;
    packet->flags = flags;
    sink(*packet);
}

}  // namespace tessaloom
