// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ExportCommand.h"

#include <QEventLoop>
#include <QTimer>
#include <atomic>
#include <exception>
#include <functional>
#include <iostream>
#include <stop_token>
#include <thread>

#include "export/TakeExport.h"
#include "shell/BundleArgument.h"
#include "shell/ExportArguments.h"
#include "shell/InterruptSignals.h"
#include "shell/OutputFile.h"
#include "shell/ProgressLine.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

std::filesystem::path defaultDestination(const TakeBundle& bundle, ExportFormat format) {
    const auto name = bundle.url.filename();
    const auto stem = name.extension() == TakeBundle::extension ? name.stem() : name;
    return std::filesystem::current_path() / (stem.string() + extensionOf(format));
}

/// Runs the work on a thread of its own, so that this one can show progress and hear Ctrl-C.
void runWithProgress(const std::function<void(const Exporter::Progress&)>& work) {
    std::atomic<double> fraction = 0;
    std::exception_ptr failure;
    QEventLoop loop;
    ProgressLine line("Exporting");
    QTimer redraw;
    QObject::connect(&redraw, &QTimer::timeout, &loop, [&] { line.show(fraction); });
    redraw.start(100ms);
    const std::jthread worker([&] {
        try {
            work([&](double done) { fraction = done; });
        } catch (...) {
            failure = std::current_exception();
        }
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    if (failure) std::rethrow_exception(failure);
}

}  // namespace

ExitStatus runExportCommand(const QStringList& words, const Exporter::RendererFactory& makeRenderer,
                            const std::vector<HardwareEncoding>& hardwareEncodings) {
    const auto arguments = ExportArguments::parse(words);
    std::stop_source stop;
    // Before the renderer starts its threads, one of which would take a signal that it doesn't block.
    const InterruptSignals interrupts([&stop] { stop.request_stop(); });
    const OpenTake take = openTake(findBundle(arguments.bundle));
    const auto destination =
        outputFile(arguments.destination.value_or(defaultDestination(take.bundle, arguments.format)));
    const auto settings = exportSettings(take, arguments.choices, playableDuration(take));
    Exporter exporter = Exporter::prepare(take.bundle, settings, makeRenderer, hardwareEncodings);
    try {
        runWithProgress([&](const Exporter::Progress& progress) {
            if (arguments.format == ExportFormat::gif)
                exporter.exportGIF(destination, progress, stop.get_token());
            else
                exporter.exportVideo(destination, progress, stop.get_token());
        });
    } catch (const ExportCancelled&) {
        return ExitStatus::interrupted;
    }
    std::cout << destination.string() << std::endl;
    return ExitStatus::done;
}

}  // namespace tessaloom
