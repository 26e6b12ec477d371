// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RegionSelection.h"

#include <QCoroFuture>
#include <QGuiApplication>
#include <QPromise>

namespace tessaloom {

QCoro::Task<std::optional<Rect>> RegionSelection::selectRegion(std::stop_token cancel) {
    if (running_) running_->finish(std::nullopt);
    if (QGuiApplication::screens().isEmpty()) co_return std::nullopt;
    const double pixelsPerPoint = platform_.shareableContent().pointPixelScale;
    const auto promise = std::make_shared<QPromise<std::optional<Rect>>>();
    promise->start();
    const auto future = promise->future();
    const auto host = std::make_shared<RegionHost>(pixelsPerPoint, [promise](std::optional<Rect> area) {
        promise->addResult(area);
        promise->finish();
    });
    running_ = host;
    const std::stop_callback giveUp(cancel, [&] { host->finish(std::nullopt); });
    const auto area = co_await future;
    if (running_ == host) running_.reset();
    co_return area;
}

}  // namespace tessaloom
