// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <future>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

#include "base/HostClock.h"
#include "capture/CapturePlatform.h"

namespace tessaloom::test {

/// Delivers frames at once, or none, or ends by itself. A complete frame has any content.
class ScriptedStream final : public ScreenStream {
  public:
    enum class Script { oneFrame, nothing, endsWithoutFrame, incompleteFrames, incompleteThenOneFrame };

    /// Its stop returns once `mayStop` is ready, if that is valid; its end by itself waits for `mayEnd`.
    ScriptedStream(Script script, const StreamConfiguration& configuration,
                   std::shared_future<void> mayStop = {}, std::shared_future<void> mayEnd = {})
        : script_(script),
          width_(configuration.source.width),
          height_(configuration.source.height),
          mayStop_(std::move(mayStop)),
          mayEnd_(std::move(mayEnd)) {}
    ~ScriptedStream() override { stop(); }
    ScriptedStream(const ScriptedStream&) = delete;
    ScriptedStream& operator=(const ScriptedStream&) = delete;

    void start(FrameHandler onFrame, StopHandler onStopped) override {
        thread_ = std::jthread([this, onFrame = std::move(onFrame), onStopped = std::move(onStopped)] {
            if (script_ == Script::endsWithoutFrame) end(onStopped);
            if (script_ == Script::incompleteFrames || script_ == Script::incompleteThenOneFrame) {
                for (int frame = 0; frame < 3; ++frame)
                    onFrame({HostClock::seconds() - 60, {}});
            }
            if (script_ != Script::oneFrame && script_ != Script::incompleteThenOneFrame) return;
            const BgraImage picture(width_, height_);
            const std::vector<ScreenPatch> patches{{picture.view(), 0, 0}};
            onFrame({HostClock::seconds(), patches});
        });
    }
    void stop() override {
        if (mayStop_.valid()) mayStop_.wait();
        if (thread_.joinable()) thread_.join();
    }

  private:
    void end(const StopHandler& onStopped) const {
        if (mayEnd_.valid()) mayEnd_.wait();
        onStopped("The script ended.");
    }

    Script script_;
    int width_;
    int height_;
    std::shared_future<void> mayStop_;
    std::shared_future<void> mayEnd_;
    std::jthread thread_;
};

/// Rests at one place, or is nowhere.
class StillPointer final : public PointerSource {
  public:
    explicit StillPointer(bool isKnown) : isKnown_(isKnown) {}
    std::optional<Point> location() override {
        return isKnown_ ? std::optional(Point{10, 10}) : std::nullopt;
    }
    void stop() override {}

  private:
    bool isKnown_;
};

/// Reports one key press as it starts, or none, or refuses to start.
class ScriptedInput final : public InputEventSource {
  public:
    ScriptedInput(bool refuses, std::string key) : refuses_(refuses), key_(std::move(key)) {}
    void start(Handler handler) override {
        if (refuses_) throw std::runtime_error("The script refuses.");
        if (!key_.empty()) handler({HostClock::seconds(), RawInput::Kind::key, key_, {}});
    }
    void stop() override {}

  private:
    bool refuses_;
    std::string key_;
};

/// Notes what it is to show, and hands on the pictures that a test delivers.
struct ScriptedThumbnails final : ThumbnailSource {
    struct Script {
        std::vector<ContentFilter> filters;
        QSize largest;
        Handler handler;  ///< while it runs
        bool refuses = false;
    };

    explicit ScriptedThumbnails(Script& script) : script_(script) {}
    ~ScriptedThumbnails() override { ScriptedThumbnails::stop(); }
    ScriptedThumbnails(const ScriptedThumbnails&) = delete;
    ScriptedThumbnails& operator=(const ScriptedThumbnails&) = delete;

    void start(Handler handler) override {
        if (script_.refuses) throw std::runtime_error("The script refuses.");
        script_.handler = std::move(handler);
    }
    void stop() override { script_.handler = nullptr; }

  private:
    Script& script_;
};

/// Answers at once.
struct ScriptedPicker final : SourcePicker {
    struct Script {
        std::optional<ContentFilter> answer;
        int asked = 0;
    };

    explicit ScriptedPicker(Script& script) : script_(script) {}
    QCoro::Task<Picked> pick(std::stop_token) override {
        ++script_.asked;
        co_return Picked{script_.answer};
    }

  private:
    Script& script_;
};

/// One small display whose sources follow a script.
struct ScriptedPlatform final : CapturePlatform {
    ScriptedStream::Script stream = ScriptedStream::Script::oneFrame;
    bool refusesInput = false;
    bool hasInput = true;      ///< otherwise no source for it can be made
    bool hasPointer = true;    ///< likewise
    bool losesServer = false;  ///< as it takes its preflight picture
    std::string pressedKey;
    bool leavesOut = true;
    bool refusesPictures = false;
    bool pointerIsKnown = true;
    std::shared_future<void> streamStop;  ///< when the stream's stop returns, if that is to be delayed
    std::shared_future<void> streamEnd;   ///< when the stream ends by itself, likewise
    int streamsMade = 0;
    std::vector<Rect> preflights;
    std::optional<Rect> presentFrame;  ///< of every window, if it isn't what it was
    std::vector<ShareableWindow> windows;
    ScriptedPicker::Script picker;
    ScriptedThumbnails::Script thumbnails;

    ShareableContent shareableContent() override { return {{{{0, 0, 64, 48}, true}}, windows, 1.0}; }
    bool leavesOutOwnWindows() override { return leavesOut; }
    BgraImage wallpaper(const DesktopScreen&) override { return {}; }
    ContentFilter withPresentFrame(const ContentFilter& filter) override {
        return {filter.window, filter.window ? presentFrame.value_or(filter.contentRect) : filter.contentRect,
                filter.pointPixelScale};
    }
    bool takePreflightPicture(const ContentFilter& filter) override {
        preflights.push_back(filter.contentRect);
        if (losesServer) throw std::runtime_error("The script lost its server.");
        return !refusesPictures;
    }
    std::unique_ptr<ScreenStream> makeScreenStream(const StreamConfiguration& configuration) override {
        ++streamsMade;
        return std::make_unique<ScriptedStream>(stream, configuration, streamStop, streamEnd);
    }
    std::unique_ptr<PointerSource> makePointerSource() override {
        if (!hasPointer) throw std::runtime_error("The script has no pointer.");
        return std::make_unique<StillPointer>(pointerIsKnown);
    }
    std::unique_ptr<InputEventSource> makeInputEventSource() override {
        if (!hasInput) throw std::runtime_error("The script has no input.");
        return std::make_unique<ScriptedInput>(refusesInput, pressedKey);
    }
    std::unique_ptr<SourcePicker> makeSourcePicker() override {
        return std::make_unique<ScriptedPicker>(picker);
    }
    std::unique_ptr<ThumbnailSource> makeThumbnailSource(const std::vector<ContentFilter>& filters,
                                                         QSize largest) override {
        thumbnails.filters = filters;
        thumbnails.largest = largest;
        return std::make_unique<ScriptedThumbnails>(thumbnails);
    }
};

}  // namespace tessaloom::test
