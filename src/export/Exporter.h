// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <stop_token>
#include <vector>

#include "core/CursorStyle.h"
#include "core/Geometry.h"
#include "core/TakeBundle.h"
#include "core/TimeSegment.h"
#include "core/WebcamConfig.h"
#include "export/CanvasSize.h"
#include "export/FrameSink.h"
#include "export/OutputTimeline.h"
#include "export/TakeMovies.h"
#include "media/HardwareEncoding.h"
#include "render/FrameComposer.h"
#include "render/Renderer.h"

namespace tessaloom {

/// The export was stopped by its caller.
class ExportCancelled : public std::runtime_error {
  public:
    ExportCancelled() : std::runtime_error("The export was cancelled.") {}
};

/// Turns one recording and its edit into a finished file. Prepared on the main thread, where text is drawn;
/// run once, on any one thread.
class Exporter {
  public:
    struct Settings {
        /// Canvas width over height.
        double aspect = 16.0 / 9.0;
        /// The kept pieces of the recording in source seconds, ascending.
        std::vector<TimeSegment> segments;
        std::optional<std::filesystem::path> wallpaper;
        /// Played under the whole of the result.
        std::optional<std::filesystem::path> musicURL;
        /// Gains; 1 leaves the level as it is.
        double musicVolume = 0.7;
        double micVolume = 1;
        /// Pixels; the recording's own size when absent.
        std::optional<int> outputLongEdge;
        double bitsPerPixel = 0.1;
        double gifFPS = 15;
        /// The longest side of a GIF in pixels.
        int gifMaxDimension = 720;
        /// A GIF repeats for ever.
        bool gifLoop = true;
        double speed = 1;
        /// The camera's bubble; absent without a camera.
        std::optional<WebcamConfig> webcam;
        CursorStyle cursorStyle = CursorStyle::system;
        /// Used in place of the recorded microphone track, where there is one.
        std::optional<std::filesystem::path> micURL;
        /// Source seconds.
        std::vector<double> clickSoundTimes;
        /// Gets the cursor's size and hot spot in points. Called on the main thread.
        std::function<FrameComposer(Size, Point)> makeComposer;
    };

    /// Ends an export; `what()` is for the user.
    class Failure : public std::runtime_error {
      public:
        enum class Reason { noVideoTrack, cantRead, cantWrite, gifFailed };

        explicit Failure(Reason reason);
        Reason reason() const { return reason_; }
        /// True when it lies in the recording, false when in what is written.
        bool isTheRecordings() const {
            return reason_ == Reason::noVideoTrack || reason_ == Reason::cantRead;
        }

      private:
        Reason reason_;
    };

    using RendererFactory = std::function<std::unique_ptr<Renderer>()>;
    /// Gets the finished fraction, 0 to 1, on the thread that runs the export.
    using Progress = std::function<void(double)>;

    /// Main thread. Without `hardware`, movies are encoded by the processor.
    static Exporter prepare(const TakeBundle& bundle, const Settings& settings,
                            const RendererFactory& makeRenderer, std::vector<HardwareEncoding> hardware = {});

    /// Writes an MP4 at 60 frames a second, with sound where there is any, and returns when it is in place.
    /// Replaces an existing file, and only by a complete one. Throws Failure, ExportCancelled once `stop` is
    /// requested, MediaError or std::system_error with the system's reason; then nothing is left behind.
    /// The hardware's encoders are tried in their order. When one gives up, all is done once more by the
    /// next, and by the processor in the end. One that took the process down the last time, or is at work for
    /// another one, isn't tried.
    void exportVideo(const std::filesystem::path& destination, const Progress& progress,
                     const std::stop_token& stop);

    /// The same for a GIF, at the settings' rate and size.
    void exportGIF(const std::filesystem::path& destination, const Progress& progress,
                   const std::stop_token& stop);

  private:
    /// What one run reads and how large it draws.
    struct Run {
        OutputTimeline timeline;
        TakeMovies movies;
        CanvasSize canvas;
    };

    using Encoding = decltype(HardwareEncoding::exported);

    Exporter(const TakeBundle& bundle, const Settings& settings, std::unique_ptr<Renderer> renderer,
             FrameComposer composer, std::vector<HardwareEncoding> hardware);

    /// False when the hardware has to be left alone, or gave up.
    bool exportInHardware(const HardwareEncoding& hardware, const std::filesystem::path& destination,
                          const Progress& progress, const std::stop_token& stop);
    void writeMovie(const std::filesystem::path& destination, const Encoding& encoding,
                    const Progress& progress, const std::stop_token& stop);

    Run begin(double framesPerSecond, std::optional<int> longEdgeLimit) const;
    /// Returns how many frames the sink got.
    template <typename Picture>
    std::int64_t drawInto(FrameSink<Picture>& sink, Run& run, const Progress& progress,
                          const std::stop_token& stop);

    TakeBundle bundle_;
    Settings settings_;
    std::unique_ptr<Renderer> renderer_;
    FrameComposer composer_;
    std::vector<HardwareEncoding> hardware_;
};

}  // namespace tessaloom
