// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/GIFWriter.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <QString>
#include <QtGlobal>
#include <cmath>
#include <fstream>
#include <iterator>
#include <numeric>

#include "export/Exporter.h"
#include "support/GifProbe.h"
#include "support/MovieMaker.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

namespace fs = std::filesystem;

/// What is logged while it exists, a line each.
class LoggedLines {
  public:
    LoggedLines() {
        lines().clear();
        previous_ =
            qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
                lines().push_back((type == QtCriticalMsg ? "error: " : "") + text.toStdString());
            });
    }
    ~LoggedLines() { qInstallMessageHandler(previous_); }
    LoggedLines(const LoggedLines&) = delete;
    LoggedLines& operator=(const LoggedLines&) = delete;

    static std::vector<std::string>& lines() {
        static std::vector<std::string> lines;
        return lines;
    }

  private:
    QtMessageHandler previous_;
};

/// Files can't grow beyond a hundred bytes while it exists.
class SmallFiles {
  public:
    SmallFiles() {
        getrlimit(RLIMIT_FSIZE, &previous_);
        const rlimit limit{100, previous_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        handler_ = signal(SIGXFSZ, SIG_IGN);
    }
    ~SmallFiles() {
        setrlimit(RLIMIT_FSIZE, &previous_);
        signal(SIGXFSZ, handler_);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

  private:
    rlimit previous_{};
    void (*handler_)(int) = nullptr;
};

class GIFWriterTest : public ::testing::Test {
  protected:
    GIFWriter writer(double fps, std::int64_t capacity, bool loop = true) const {
        return GIFWriter(destination_, fps, capacity, loop);
    }

    static void add(GIFWriter& writer, int count) {
        for (int n = 0; n < count; ++n) {
            const auto shade = static_cast<std::uint8_t>(n % 2 * 255);
            writer.add(test::plainImage(20, 10, {shade, shade, shade}).view());
        }
    }

    std::vector<int> delaysAt(double fps, int count) const {
        auto gif = writer(fps, count);
        add(gif, count);
        gif.finish();
        return test::probeGif(destination_).delays();
    }

    auto itemCount() const { return std::distance(fs::directory_iterator(folder_.path()), {}); }

    static std::string contentOf(const fs::path& path) {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    test::TemporaryFolder folder_;
    fs::path destination_ = folder_.path() / "a.gif";
};

TEST_F(GIFWriterTest, DelaysAreTakenFromTheRunningTotal) {
    EXPECT_EQ(delaysAt(10, 4), (std::vector<int>{10, 10, 10, 10}));
    EXPECT_EQ(delaysAt(15, 6), (std::vector<int>{7, 6, 7, 7, 6, 7}));
    EXPECT_EQ(delaysAt(30, 6), (std::vector<int>{3, 4, 3, 3, 4, 3}));
    EXPECT_EQ(delaysAt(24, 6), (std::vector<int>{4, 4, 5, 4, 4, 4}));
}

TEST_F(GIFWriterTest, TheSumOfTheDelaysStaysExact) {
    for (const double fps : {10.0, 15.0, 24.0, 30.0}) {
        const auto delays = delaysAt(fps, 150);
        EXPECT_EQ(std::accumulate(delays.begin(), delays.end(), 0), std::lround(150 * 100 / fps)) << fps;
    }
}

TEST_F(GIFWriterTest, FramesBeyondTheCapacityAreDroppedAndLogged) {
    auto gif = writer(10, 30);
    add(gif, 31);
    EXPECT_EQ(gif.framesAdded(), 30);
    EXPECT_EQ(gif.framesDropped(), 1);
    const LoggedLines log;
    gif.finish();
    EXPECT_EQ(LoggedLines::lines(),
              std::vector<std::string>{"error: GIF: dropped 1 frame(s) beyond the 30 planned"});
    EXPECT_EQ(test::probeGif(destination_).frames.size(), 30U);
    EXPECT_EQ(test::shownPictures(destination_).size(), 30U);
}

TEST_F(GIFWriterTest, ACapacityBelowOneIsOne) {
    auto gif = writer(10, -3);
    add(gif, 2);
    gif.finish();
    EXPECT_EQ(test::probeGif(destination_).frames.size(), 1U);
}

TEST_F(GIFWriterTest, OnlyALoopingGifSpeaksOfRepetition) {
    for (const bool loop : {true, false}) {
        auto gif = writer(10, 2, loop);
        add(gif, 2);
        gif.finish();
        EXPECT_EQ(test::probeGif(destination_).loopCount, loop ? std::optional(0) : std::nullopt);
    }
}

TEST_F(GIFWriterTest, AFrameAddedAgainIsAFrameOfItsOwn) {
    auto gif = writer(15, 3);
    const BgraImage picture = test::plainImage(20, 10, test::pureBlue);
    gif.append(4, picture, FrameChange::content);
    gif.append(5, picture, FrameChange::none);
    gif.append(9, picture, FrameChange::none);
    gif.finish();
    EXPECT_EQ(test::probeGif(destination_).delays(), (std::vector<int>{7, 6, 7}));
}

TEST_F(GIFWriterTest, TheOldFileStandsUntilTheNewOneIsComplete) {
    std::ofstream(destination_) << "old";
    auto gif = writer(10, 3);
    add(gif, 3);
    EXPECT_EQ(contentOf(destination_), "old");
    gif.finish();
    EXPECT_TRUE(contentOf(destination_).starts_with("GIF89a"));
    EXPECT_EQ(itemCount(), 1);
}

TEST_F(GIFWriterTest, OneThatIsGivenUpLeavesTheOldFileAndNothingElse) {
    std::ofstream(destination_) << "old";
    {
        auto gif = writer(10, 100);
        add(gif, 70);
    }
    EXPECT_EQ(contentOf(destination_), "old");
    EXPECT_EQ(itemCount(), 1);
}

TEST_F(GIFWriterTest, WithoutFramesThereIsNothingToWrite) {
    std::ofstream(destination_) << "old";
    auto gif = writer(10, 3);
    const LoggedLines log;
    try {
        gif.finish();
        FAIL() << "wrote a GIF of nothing";
    } catch (const Exporter::Failure& failure) {
        EXPECT_EQ(failure.reason(), Exporter::Failure::Reason::gifFailed);
        EXPECT_STREQ(failure.what(), "Couldn't write the GIF.");
    }
    EXPECT_EQ(LoggedLines::lines(),
              std::vector<std::string>{"error: GIF: no frames were drawn, nothing to write"});
    EXPECT_EQ(contentOf(destination_), "old");
    EXPECT_EQ(itemCount(), 1);
}

TEST_F(GIFWriterTest, ADestinationThatCannotBeWrittenFailsAtOnceWithTheReason) {
    destination_ = folder_.path() / "nowhere" / "a.gif";
    try {
        writer(10, 3);
        FAIL() << "wrote into a folder that isn't there";
    } catch (const Exporter::Failure& failure) {
        EXPECT_EQ(failure.reason(), Exporter::Failure::Reason::gifFailed);
        try {
            std::rethrow_if_nested(failure);
            FAIL() << "gave no reason";
        } catch (const std::system_error& reason) {
            EXPECT_EQ(reason.code(), std::errc::no_such_file_or_directory);
        }
    }
    EXPECT_EQ(itemCount(), 0);
}

TEST_F(GIFWriterTest, AFolderInTheWayIsKept) {
    fs::create_directories(destination_ / "occupied");
    auto gif = writer(10, 1);
    add(gif, 1);
    EXPECT_THROW(gif.finish(), std::system_error);
    EXPECT_TRUE(fs::is_directory(destination_ / "occupied"));
    EXPECT_EQ(itemCount(), 1);
}

TEST_F(GIFWriterTest, AFileThatTheSystemRefusesIsLogged) {
    std::ofstream(destination_) << "old";
    auto gif = writer(10, 5);
    add(gif, 3);
    const SmallFiles limit;
    const LoggedLines log;
    EXPECT_THROW(gif.finish(), Exporter::Failure);
    EXPECT_EQ(LoggedLines::lines(),
              std::vector<std::string>{"error: GIF: the encoder refused the file (3 of 5 frames)"});
    EXPECT_EQ(contentOf(destination_), "old");
    EXPECT_EQ(itemCount(), 1);
}

TEST_F(GIFWriterTest, AFileThatCannotBeBegunIsNotLogged) {
    const LoggedLines log;
    EXPECT_THROW(GIFWriter(folder_.path() / "nowhere" / "a.gif", 10, 3, true), Exporter::Failure);
    // Longer than a name may be.
    EXPECT_THROW(GIFWriter(folder_.path() / (std::string(300, 'a') + ".gif"), 10, 3, true),
                 Exporter::Failure);
    EXPECT_EQ(LoggedLines::lines(), std::vector<std::string>());
    EXPECT_EQ(itemCount(), 0);
}

}  // namespace
}  // namespace tessaloom
