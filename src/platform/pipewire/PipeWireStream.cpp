// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pipewire/PipeWireStream.h"

#include <spa/node/io.h>
#include <spa/param/buffers.h>
#include <spa/param/param.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>

#include "base/Log.h"
#include "platform/pipewire/PipeWireConnection.h"
#include "platform/pipewire/PipeWireSender.h"

namespace tessaloom {
namespace {

constexpr std::chrono::milliseconds retryInterval{300};
/// How often it is looked what is wrong while nothing comes.
constexpr std::chrono::milliseconds lookInterval{50};
/// What the server may be ahead of us before it has to drop: a third of a second of sound.
constexpr int bufferCount = 16;
constexpr int mostBuffers = 64;
constexpr std::size_t podMemory = 4096;

/// Buffers on their way from the real-time thread, which brings them, to the one that has time for them.
class ArrivedBuffers {
  public:
    struct Arrived {
        pw_buffer* buffer = nullptr;
        pw_time time{};
        std::uint32_t driver = SPA_ID_INVALID;  ///< the node that sets the graph's pace
        std::uint64_t duration = 0;             ///< of the cycle, at the rate of the time
    };

    bool push(const Arrived& arrived) {
        const auto end = end_.load(std::memory_order_relaxed);
        if (end - begin_.load(std::memory_order_acquire) == ring_.size()) return false;
        ring_[end % ring_.size()] = arrived;
        end_.store(end + 1, std::memory_order_release);
        return true;
    }
    bool pop(Arrived& arrived) {
        const auto begin = begin_.load(std::memory_order_relaxed);
        if (begin == end_.load(std::memory_order_acquire)) return false;
        arrived = ring_[begin % ring_.size()];
        begin_.store(begin + 1, std::memory_order_release);
        return true;
    }
    void clear() {
        Arrived forgotten;
        while (pop(forgotten)) {
        }
    }

  private:
    std::array<Arrived, mostBuffers> ring_{};
    std::atomic<std::size_t> begin_ = 0;
    std::atomic<std::size_t> end_ = 0;
};

/// One stream on one connection, as long as both last.
class Session {
  public:
    Session(PipeWireConnection& connection, PipeWireStream::Client& client)
        : connection_(connection),
          client_(client),
          stream_(pw_stream_new(connection.core(), "Tessaloom", client.makeProperties())) {
        if (!stream_) throw std::runtime_error("A PipeWire stream can't be made.");
        sender_.emplace(connection, *stream_);
        static const pw_stream_events events = handlers();
        pw_stream_add_listener(stream_.get(), &hook_, &events, this);
        connect();
    }

    bool ended() const { return failure_ || connection_.lost(); }
    std::string reason() const { return failure_.value_or("connection lost"); }

    /// What has come since the last time.
    PipeWireHealth::State handleBuffers() {
        ArrivedBuffers::Arrived arrived;
        bool delivered = false;
        while (arrived_.pop(arrived)) {
            client_.received(*arrived.buffer->buffer, cycleOf(arrived));
            pw_stream_queue_buffer(stream_.get(), arrived.buffer);
            delivered = true;
        }
        return {.runs = sender_->runs(), .delivered = delivered, .trouble = sender_->trouble()};
    }

  private:
    static pw_stream_events handlers() {
        pw_stream_events events{};
        events.version = PW_VERSION_STREAM_EVENTS;
        events.state_changed = [](void* data, pw_stream_state, pw_stream_state state, const char* error) {
            static_cast<Session*>(data)->stateChanged(state, error);
        };
        events.param_changed = [](void* data, std::uint32_t id, const spa_pod* value) {
            if (id == SPA_PARAM_Format && value != nullptr) static_cast<Session*>(data)->negotiate(*value);
        };
        events.io_changed = [](void* data, std::uint32_t id, void* area, std::uint32_t) {
            if (id == SPA_IO_Position)
                static_cast<Session*>(data)->position_ = static_cast<spa_io_position*>(area);
        };
        // Buffers are taken away when another device takes over: what still waits in them is lost.
        events.remove_buffer = [](void* data, pw_buffer*) { static_cast<Session*>(data)->arrived_.clear(); };
        events.process = [](void* data) { static_cast<Session*>(data)->takeBuffers(); };
        return events;
    }

    void stateChanged(pw_stream_state state, const char* error) {
        if (state == PW_STREAM_STATE_ERROR) failure_ = error != nullptr ? error : "unknown error";
    }

    void connect() {
        std::array<std::uint8_t, podMemory> memory{};
        spa_pod_builder builder{};
        spa_pod_builder_init(&builder, memory.data(), memory.size());
        auto formats = client_.formats(builder);
        const auto flags = static_cast<pw_stream_flags>(
            PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS);
        const int result = pw_stream_connect(stream_.get(), PW_DIRECTION_INPUT, PW_ID_ANY, flags,
                                             formats.data(), static_cast<std::uint32_t>(formats.size()));
        if (result < 0) throw std::runtime_error("A PipeWire stream can't be connected.");
    }

    void negotiate(const spa_pod& format) {
        client_.formatChosen(format);
        std::array<std::uint8_t, podMemory> memory{};
        spa_pod_builder builder{};
        spa_pod_builder_init(&builder, memory.data(), memory.size());
        constexpr int memoryKinds = 1 << SPA_DATA_MemPtr | 1 << SPA_DATA_MemFd;
        const void* buffers = spa_pod_builder_add_object(
            &builder, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers, SPA_PARAM_BUFFERS_buffers,
            SPA_POD_CHOICE_RANGE_Int(bufferCount, client_.leastBuffers(), mostBuffers),
            SPA_PARAM_BUFFERS_dataType, SPA_POD_CHOICE_FLAGS_Int(memoryKinds));
        const void* header = spa_pod_builder_add_object(
            &builder, SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta, SPA_PARAM_META_type,
            SPA_POD_Id(SPA_META_Header), SPA_PARAM_META_size, SPA_POD_Int(sizeof(spa_meta_header)));
        std::array params{static_cast<const spa_pod*>(buffers), static_cast<const spa_pod*>(header)};
        pw_stream_update_params(stream_.get(), params.data(), params.size());
    }

    /// On the server's real-time thread: only there the cycle's time can be read, and nothing else is done.
    void takeBuffers() {
        ArrivedBuffers::Arrived arrived;
        pw_stream_get_time_n(stream_.get(), &arrived.time, sizeof arrived.time);
        if (const spa_io_position* position = position_) {
            arrived.driver = position->clock.id;
            arrived.duration = position->clock.duration;
        }
        while ((arrived.buffer = pw_stream_dequeue_buffer(stream_.get())) != nullptr)
            arrived_.push(arrived);  // has room for as many as there can be
        connection_.wake();
    }

    PipeWireCycle cycleOf(const ArrivedBuffers::Arrived& arrived) const {
        PipeWireCycle cycle{.time = arrived.time, .driver = arrived.driver};
        if (arrived.time.rate.num == 0) return cycle;
        const double rate = static_cast<double>(arrived.time.rate.denom) / arrived.time.rate.num;
        cycle.length = static_cast<double>(arrived.duration) / rate;
        cycle.senderDrives = arrived.driver == sender_->node();
        cycle.senderPlays = sender_->plays();
        cycle.playbackDelay = sender_->playbackDelay(cycle.length, rate);
        return cycle;
    }

    PipeWireConnection& connection_;
    PipeWireStream::Client& client_;
    ArrivedBuffers arrived_;
    std::atomic<const spa_io_position*> position_ = nullptr;  ///< the server's, of the graph's present cycle
    std::optional<std::string> failure_;
    spa_hook hook_{};
    std::optional<PipeWireSender> sender_;
    PipeWireHandle<pw_stream> stream_;  ///< last, so that no handler runs on what is gone
};

}  // namespace

std::span<const std::uint8_t> contentOf(const spa_buffer& buffer) {
    if (buffer.n_datas == 0 || buffer.datas[0].data == nullptr) return {};
    const spa_data& data = buffer.datas[0];
    if ((data.chunk->flags & SPA_CHUNK_FLAG_CORRUPTED) != 0) return {};
    // Whoever sends may be mistaken about the size.
    const auto offset = std::min(data.chunk->offset, data.maxsize);
    const auto size = std::min(data.chunk->size, data.maxsize - offset);
    return {static_cast<const std::uint8_t*>(data.data) + offset, size};
}

void PipeWireStream::start() {
    if (thread_.joinable()) return;
    thread_ = std::jthread([this](const std::stop_token& stopToken) { run(stopToken); });
}

void PipeWireStream::stop() {
    thread_.request_stop();
    if (thread_.joinable()) thread_.join();
}

void PipeWireStream::run(const std::stop_token& stop) {
    std::unique_lock guard(lock_);
    while (!stop.stop_requested()) {
        try {
            receive(stop);
        } catch (const std::exception& error) {
            // There is no server at the moment, or no device; it may come back.
            health_.failed(error.what());
        }
        wakeUp_.wait_for(guard, stop, retryInterval, [] { return false; });
    }
}

/// Until the stream is to stop. Throws when it loses its node or its server, or the node can't be used.
void PipeWireStream::receive(const std::stop_token& stop) {
    const auto connection = PipeWireConnection::open();
    Session session(*connection, client_);
    const std::stop_callback wakeUp(stop, [&connection] { connection->wake(); });
    while (!stop.stop_requested() && !session.ended()) {
        connection->iterate(lookInterval);
        const auto state = session.handleBuffers();
        if (health_.look(state, std::chrono::steady_clock::now())) throw std::runtime_error(*state.trouble);
    }
    if (session.ended()) throw std::runtime_error(session.reason());
}

}  // namespace tessaloom
