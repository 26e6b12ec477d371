// SPDX-License-Identifier: GPL-3.0-or-later
#include "take/RecordingSummary.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <cstdlib>
#include <fstream>

#include "support/MovieMaker.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

class RecordingSummaryTest : public ::testing::Test {
  protected:
    void put(std::string_view name, const std::string& content = {}) const {
        std::ofstream(bundle_.file(name)) << content;
    }
    RecordingSummary summary() const { return RecordingSummary::of(bundle_); }

    test::TemporaryFolder folder_;
    TakeBundle bundle_ = TakeBundle::create(folder_.path() / "My take 1.5.takes");
};

TEST_F(RecordingSummaryTest, TheNameIsTheFoldersWithoutItsExtension) {
    EXPECT_EQ(summary().recordingId, "My take 1.5");
    EXPECT_EQ(summary().path, bundle_.url.string());
    EXPECT_EQ(RecordingSummary::of({folder_.path() / "v1.5"}).recordingId, "v1.5");
}

TEST_F(RecordingSummaryTest, TheDurationIsTheMoviesToATenthOfASecond) {
    test::writeRecordedMovie(bundle_.file(TakeBundle::screenFile), 64, 36,
                             test::plainPictures(16, 10, test::black));
    EXPECT_DOUBLE_EQ(summary().durationSeconds, 1.5);
}

TEST_F(RecordingSummaryTest, AMovieThatCannotBeReadHasNoDuration) {
    EXPECT_EQ(summary().durationSeconds, 0);
    for (const char* content : {"", "words, words, words"}) {
        put(TakeBundle::screenFile, content);
        EXPECT_EQ(summary().durationSeconds, 0) << content;
    }
    test::writeSoundFile(bundle_.file(TakeBundle::screenFile));
    EXPECT_EQ(summary().durationSeconds, 0);
}

TEST_F(RecordingSummaryTest, CameraAndMicrophoneAreTheirFiles) {
    EXPECT_FALSE(summary().hasCamera);
    EXPECT_FALSE(summary().hasMicrophone);
    put(TakeBundle::webcamFile);
    EXPECT_TRUE(summary().hasCamera);
    EXPECT_FALSE(summary().hasMicrophone);
    put(TakeBundle::microphoneFile);
    EXPECT_TRUE(summary().hasMicrophone);
}

TEST_F(RecordingSummaryTest, CaptionsAreTheEdits) {
    EXPECT_FALSE(summary().hasCaptions);
    EditParams edit;
    edit.captions.emplace_back();
    bundle_.write(edit);
    EXPECT_TRUE(summary().hasCaptions);
}

TEST_F(RecordingSummaryTest, AnEditThatCannotBeReadHasNoCaptions) {
    for (const char* content : {"", "[]", "{", "null"}) {
        put(TakeBundle::editFile, content);
        EXPECT_FALSE(summary().hasCaptions) << content;
    }
    std::filesystem::remove(bundle_.file(TakeBundle::editFile));
    EXPECT_FALSE(summary().hasCaptions);
}

TEST_F(RecordingSummaryTest, TheDateIsInUniversalTime) {
    const std::string created = summary().created;
    ASSERT_EQ(created.size(), std::string("2026-11-15T13:05:09Z").size());
    EXPECT_EQ(created.back(), 'Z');
    const auto read = QDateTime::fromString(QString::fromStdString(created), Qt::ISODate);
    EXPECT_LT(std::abs(read.secsTo(QDateTime::currentDateTimeUtc())), 60) << created;
}

}  // namespace
}  // namespace tessaloom
