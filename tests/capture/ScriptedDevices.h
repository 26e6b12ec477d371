// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <future>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "base/HostClock.h"
#include "capture/CaptureError.h"
#include "capture/RecordingDevices.h"

namespace tessaloom::test {

/// What a scripted source's owner has done with it, and the way to make it deliver. Outlives the source.
template <typename Delivery>
class SourceControl {
  public:
    using Handler = std::function<void(const Delivery&)>;

    void deliver(const Delivery& delivery) {
        const std::lock_guard guard(lock_);
        if (handler_) handler_(delivery);
    }
    void connect(Handler handler) {
        const std::lock_guard guard(lock_);
        handler_ = std::move(handler);
        ++starts_;
    }
    void disconnect() {
        const std::lock_guard guard(lock_);
        handler_ = nullptr;
    }
    int starts() const { return starts_; }
    bool running() const {
        const std::lock_guard guard(lock_);
        return handler_ != nullptr;
    }

  private:
    mutable std::mutex lock_;
    Handler handler_;
    int starts_ = 0;
};

class ScriptedSound final : public LiveSoundSource {
  public:
    /// Its stop returns once `mayStop` is ready, if that is valid.
    ScriptedSound(SourceControl<SoundChunk>& control, SoundFormat format,
                  std::shared_future<void> mayStop = {})
        : control_(control), format_(format), mayStop_(std::move(mayStop)) {}
    ~ScriptedSound() override { control_.disconnect(); }
    ScriptedSound(const ScriptedSound&) = delete;
    ScriptedSound& operator=(const ScriptedSound&) = delete;

    std::string name() const override { return "scripted sound"; }
    SoundFormat format() const override { return format_; }
    void start(Handler handler) override { control_.connect(std::move(handler)); }
    void stop() override {
        if (mayStop_.valid()) mayStop_.wait();
        control_.disconnect();
    }

  private:
    SourceControl<SoundChunk>& control_;
    SoundFormat format_;
    std::shared_future<void> mayStop_;
};

/// Its owner delivers the pictures, or it delivers a black one every 30th of a second by itself.
class ScriptedCamera final : public CameraSource {
  public:
    /// Its stop returns once `mayStop` is ready, if that is valid.
    ScriptedCamera(SourceControl<CameraPicture>& control, bool delivers,
                   std::shared_future<void> mayStop = {})
        : control_(control), delivers_(delivers), mayStop_(std::move(mayStop)) {}
    ~ScriptedCamera() override { ScriptedCamera::stop(); }
    ScriptedCamera(const ScriptedCamera&) = delete;
    ScriptedCamera& operator=(const ScriptedCamera&) = delete;

    std::string name() const override { return "scripted camera"; }
    void start(Handler handler) override {
        control_.connect(std::move(handler));
        if (!delivers_) return;
        thread_ = std::jthread([this](const std::stop_token& stopToken) {
            const BgraImage picture(64, 48);
            while (!stopToken.stop_requested()) {
                control_.deliver({HostClock::seconds(), picture.view()});
                std::this_thread::sleep_for(std::chrono::milliseconds(33));
            }
        });
    }
    void stop() override {
        if (mayStop_.valid()) mayStop_.wait();
        control_.disconnect();
        thread_.request_stop();
        if (thread_.joinable()) thread_.join();
    }

  private:
    SourceControl<CameraPicture>& control_;
    bool delivers_;
    std::shared_future<void> mayStop_;
    std::jthread thread_;
};

/// Devices that follow a script: none at all unless told.
struct ScriptedDevices final : RecordingDevices {
    bool hasMicrophone = false;
    bool hasSystemAudio = false;
    bool hasCamera = false;
    bool cameraDelivers = true;
    std::shared_future<void> soundStop;      ///< when the microphone's stop returns, if that is to be delayed
    std::shared_future<void> cameraOpening;  ///< when a camera is open, likewise
    std::shared_future<void> cameraStop;     ///< when its stop returns, likewise
    SourceControl<SoundChunk> microphone;
    SourceControl<SoundChunk> systemAudio;
    SourceControl<CameraPicture> camera;
    std::string askedMicrophone;
    std::string askedCamera;

    std::unique_ptr<LiveSoundSource> openMicrophone(const std::string& identifier) override {
        askedMicrophone = identifier;
        if (!hasMicrophone) throw CaptureError::noMicrophone();
        return std::make_unique<ScriptedSound>(microphone, SoundFormat{48'000, 1}, soundStop);
    }
    std::unique_ptr<LiveSoundSource> openSystemAudio() override {
        if (!hasSystemAudio) throw std::runtime_error("The script has no sound server.");
        return std::make_unique<ScriptedSound>(systemAudio, SoundFormat{48'000, 2});
    }
    std::unique_ptr<CameraSource> openCamera(const std::string& identifier) override {
        askedCamera = identifier;
        if (cameraOpening.valid()) cameraOpening.wait();
        if (!hasCamera) throw CaptureError::noCamera();
        return std::make_unique<ScriptedCamera>(camera, cameraDelivers, cameraStop);
    }
};

}  // namespace tessaloom::test
