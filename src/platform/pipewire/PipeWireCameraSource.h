// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <string>

#include "capture/CameraSource.h"
#include "media/CameraPixels.h"
#include "platform/pipewire/PipeWireStream.h"

namespace tessaloom {

/// A camera of the server.
class PipeWireCameraSource final : public CameraSource, private PipeWireStream::Client {
  public:
    /// `node` is the camera's name on the server; without one the server chooses. `description` is for
    /// people.
    PipeWireCameraSource(std::string node, std::string description);
    ~PipeWireCameraSource() override;

    /// Throws std::runtime_error, in words for people, when the camera is there but can't be used. Takes only
    /// moments where all is well.
    void open();

    std::string name() const override { return description_; }
    void start(Handler handler) override;
    void stop() override { stream_.stop(); }

  private:
    pw_properties* makeProperties() const override;
    std::vector<const spa_pod*> formats(spa_pod_builder& builder) const override;
    int leastBuffers() const override { return 2; }
    void formatChosen(const spa_pod& format) override;
    void received(const spa_buffer& buffer, const PipeWireCycle& cycle) override;
    void troubled(const std::string& reason) override;

    std::string node_;
    std::string description_;
    Handler handler_;
    std::atomic<bool> started_ = false;  ///< the handler is there
    CameraBuffer layout_;                ///< of what comes, without its bytes
    CameraPixels pixels_;
    PipeWireStream stream_;
};

}  // namespace tessaloom
