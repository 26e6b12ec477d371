// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <memory>
#include <string>

#include "media/MediaError.h"

/// Owners and error reports for libav objects. Included by this folder's source files only.
namespace tessaloom {

struct LibavDelete {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVBufferRef* buffer) const { av_buffer_unref(&buffer); }
    void operator()(AVDictionary* options) const { av_dict_free(&options); }
    void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
};

template <typename Object>
using LibavHandle = std::unique_ptr<Object, LibavDelete>;

inline std::string libavReason(int code) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(code, text, sizeof text);
    return text;
}

/// Keeps libav's own chatter off stderr: what matters of it reaches the caller as an exception.
inline void quietLibav() {
    static const bool quiet = [] {
        av_log_set_level(AV_LOG_FATAL);
        return true;
    }();
    static_cast<void>(quiet);
}

/// Throws an Error reading "`what`: reason." when `code`, a libav return value, is an error.
template <typename Error = MediaError>
int requireLibav(int code, const std::string& what) {
    if (code < 0) throw Error(what + ": " + libavReason(code) + ".");
    return code;
}

}  // namespace tessaloom
