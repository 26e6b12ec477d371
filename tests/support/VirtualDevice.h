// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pipewire/pipewire.h>
#include <spa/pod/builder.h>

#include <string>
#include <utility>
#include <vector>

namespace tessaloom::test {

/// Something that sends into a sound server, or takes from it: a virtual microphone, player, camera or pair
/// of speakers. It is plugged in as long as this object lives.
class VirtualDevice {
  public:
    virtual ~VirtualDevice();
    VirtualDevice(const VirtualDevice&) = delete;
    VirtualDevice& operator=(const VirtualDevice&) = delete;

  protected:
    using Properties = std::vector<std::pair<std::string, std::string>>;

    /// `socket` is the server's. Throws std::runtime_error when it can't be reached.
    VirtualDevice(const std::string& socket, const Properties& properties);

    /// To be called at the end of the constructor: from here on the handlers below run, on a thread of the
    /// device's own.
    void plugIn(std::vector<const spa_pod*> parameters, pw_stream_flags flags,
                pw_direction direction = PW_DIRECTION_OUTPUT);
    /// To be called at the start of the destructor: from here on they don't.
    void unplug();

    /// What a device tells of the time from a cycle's start to its sound, in cycles.
    static const spa_pod* latency(spa_pod_builder& builder, spa_direction direction, float cycles);

    virtual void process() = 0;
    virtual void formatChosen() {}
    virtual void streaming(bool /*on*/) {}
    /// What tells the graph's time; null when it is taken away.
    virtual void positionShared(spa_io_position* /*position*/) {}

    pw_loop* loop() const { return pw_thread_loop_get_loop(loop_); }
    pw_stream* stream() const { return stream_; }

  private:
    pw_thread_loop* loop_ = nullptr;
    pw_context* context_ = nullptr;
    pw_core* core_ = nullptr;
    pw_stream* stream_ = nullptr;
    spa_hook hook_{};
};

}  // namespace tessaloom::test
