// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/WarmCamera.h"

#include <QCoroFuture>
#include <exception>
#include <functional>
#include <utility>
#include <vector>

#include "base/BoundedWait.h"
#include "base/Log.h"
#include "capture/CaptureError.h"
#include "capture/DeviceOpening.h"

namespace tessaloom {

QCoro::Task<> WarmCamera::turnOn(std::string identifier, CameraChoice choice) {
    wanted_ = Wanted{std::move(identifier), choice};
    if (camera_ || opening_) co_return;
    opening_.emplace().start();
    while (wanted_ && !camera_) {
        const std::string opening = wanted_->identifier;
        auto opened = co_await openOrLog(opening);
        const bool isWanted = wanted_ && wanted_->identifier == opening;
        if (!isWanted) {
            letGo(std::move(opened));
        } else if (!opened) {
            wanted_.reset();
        } else {
            camera_ = std::move(opened);
            presenter_.showCamera(*camera_, wanted_->choice);
        }
    }
    opening_->finish();
    opening_.reset();
}

void WarmCamera::turnOff() {
    wanted_.reset();
    if (!camera_) return;
    presenter_.hideCamera();
    letGo(std::move(camera_));
}

void WarmCamera::show(const CameraChoice& choice) {
    if (camera_) presenter_.showCamera(*camera_, choice);
}

QCoro::Task<std::unique_ptr<WebcamRecorder>> WarmCamera::take() {
    if (opening_ && wanted_) {
        const auto opened = opening_->future();
        co_await opened;
    }
    wanted_.reset();
    co_return std::move(camera_);
}

QCoro::Task<std::unique_ptr<WebcamRecorder>> WarmCamera::open(std::string identifier) {
    if (!permissions_.isGranted(Permission::camera)) throw CaptureError::cameraNotAuthorized();
    co_await untilLetGo();
    std::function<std::unique_ptr<CameraSource>()> open = [this, identifier] {
        return devices_.openCamera(identifier);
    };
    auto camera = co_await opened(std::move(open), clock_);
    co_return WebcamRecorder::start(std::move(camera));
}

/// Nothing when it can't be opened.
QCoro::Task<std::unique_ptr<WebcamRecorder>> WarmCamera::openOrLog(std::string identifier) {
    try {
        co_return co_await open(std::move(identifier));
    } catch (const std::exception& error) {
        qCCritical(Log::recording, "Camera preview unavailable: %s", error.what());
    }
    co_return std::unique_ptr<WebcamRecorder>();
}

void WarmCamera::letGo(std::unique_ptr<WebcamRecorder> camera) {
    std::erase_if(leaving_, [](const BackgroundWork& work) { return work.future().isFinished(); });
    if (camera)
        leaving_.emplace_back([recorder = std::shared_ptr(std::move(camera))] { recorder->finish(); },
                              WebcamRecorder::finishLimit);
}

QCoro::Task<> WarmCamera::untilLetGo() {
    std::vector<QFuture<void>> ends;
    for (const BackgroundWork& work : leaving_)
        ends.push_back(work.future());
    for (const auto& end : ends)
        co_await waitBounded(end, WebcamRecorder::finishLimit, clock_);
}

}  // namespace tessaloom
