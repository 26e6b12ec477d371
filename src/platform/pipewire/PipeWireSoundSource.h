// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <string>

#include "capture/LiveSoundSource.h"
#include "platform/pipewire/LostBuffers.h"
#include "platform/pipewire/PipeWireStream.h"

namespace tessaloom {

/// Sound from the server: a microphone, or what the default speakers play.
class PipeWireSoundSource final : public LiveSoundSource, private PipeWireStream::Client {
  public:
    enum class Kind {
        microphone,   ///< one channel
        systemAudio,  ///< two channels
    };

    /// `node` is the device's name on the server; without one it is the default device, whichever that is at
    /// each moment. `description` is for people.
    PipeWireSoundSource(Kind kind, std::string node, std::string description);
    ~PipeWireSoundSource() override;

    /// Throws std::runtime_error, in words for people, when the device is there but can't be used. Takes
    /// only moments where all is well.
    void open();

    std::string name() const override { return description_; }
    SoundFormat format() const override;
    void start(Handler handler) override;
    void stop() override { stream_.stop(); }

  private:
    pw_properties* makeProperties() const override;
    std::vector<const spa_pod*> formats(spa_pod_builder& builder) const override;
    int leastBuffers() const override { return 16; }
    void formatChosen(const spa_pod& format) override;
    void received(const spa_buffer& buffer, const PipeWireCycle& cycle) override;
    void troubled(const std::string& reason) override;
    double timeOfFirst(double length, const PipeWireCycle& cycle) const;
    int lostBefore(double length, const PipeWireCycle& cycle);

    Kind kind_;
    std::string node_;
    std::string description_;
    Handler handler_;
    std::atomic<bool> started_ = false;  ///< the handler is there
    LostBuffers lost_;
    PipeWireStream stream_;
};

}  // namespace tessaloom
