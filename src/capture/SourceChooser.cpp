// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/SourceChooser.h"

#include <QCoroFuture>
#include <QPromise>
#include <exception>
#include <memory>

#include "base/Log.h"
#include "capture/ChooserHost.h"

namespace tessaloom {
namespace {

std::unique_ptr<ChooserHost> shownChooser(CapturePlatform& platform, ChooserHost::Done done) {
    try {
        return std::make_unique<ChooserHost>(platform, std::move(done));
    } catch (const std::exception& error) {
        qCCritical(Log::sourcePicker, "Source picker failed: %s", error.what());
        return nullptr;
    }
}

}  // namespace

QCoro::Task<Picked> SourceChooser::pick(std::stop_token cancel) {
    QPromise<Picked> promise;
    promise.start();
    const auto host = shownChooser(platform_, [&](const std::optional<ContentFilter>& filter) {
        promise.addResult(Picked{filter});
        promise.finish();
    });
    if (!host) co_return Picked{};
    const std::stop_callback giveUp(cancel, [&] { host->finish(std::nullopt); });
    const auto future = promise.future();
    co_return co_await future;
}

}  // namespace tessaloom
