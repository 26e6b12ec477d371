// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/InterruptedTake.h"

#include <gtest/gtest.h>

#include <fstream>

#include "core/EventJournal.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

const std::vector<CursorSample> samples{{0, 0.5, 0.5}, {30, 0.5, 0.5}};
const std::vector<InputEvent> events{
    {5, InputEvent::EventType::leftClick, RelativePoint{0.5, 0.5}, std::nullopt}};

EventLog header() {
    EventLog log;
    log.captureRect = {0, 0, 1920, 1080, 1};
    return log;
}

class InterruptedTake : public ::testing::Test {
  protected:
    void recordAndDie() { EventJournal::create(bundle, header()).append(samples, events); }
    bool hasJournal() const { return std::filesystem::exists(bundle.file(TakeBundle::journalFile)); }

    test::TemporaryFolder folder;
    TakeBundle bundle = TakeBundle::create(folder.path() / "a.takes");
};

TEST_F(InterruptedTake, GetsItsLogAndItsZoomsFromTheJournal) {
    recordAndDie();
    EditParams edit;
    edit.padding = 64;
    bundle.write(edit);
    finishInterruptedTake(bundle);
    EXPECT_EQ(bundle.readLog().captureRect.width, 1920);
    EXPECT_EQ(bundle.readLog().cursorSamples, samples);
    EXPECT_EQ(bundle.readLog().events, events);
    EXPECT_EQ(bundle.readEdit().padding, 64) << "the recorder's settings stay";
    ASSERT_EQ(bundle.readEdit().zoomKeyframes.size(), 1U);
    EXPECT_DOUBLE_EQ(bundle.readEdit().zoomKeyframes[0].endPTS, 6.2);
    EXPECT_FALSE(hasJournal());
}

TEST_F(InterruptedTake, IsRidOfTheFilesInWhichNothingWasWritten) {
    recordAndDie();
    std::ofstream(bundle.file(TakeBundle::screenFile)) << "pictures";
    std::ofstream(bundle.file(TakeBundle::microphoneFile)).close();
    std::ofstream(bundle.file(TakeBundle::webcamFile)).close();
    finishInterruptedTake(bundle);
    EXPECT_FALSE(bundle.hasMic());
    EXPECT_FALSE(bundle.hasWebcam());
    EXPECT_TRUE(std::filesystem::exists(bundle.file(TakeBundle::screenFile)));
}

TEST_F(InterruptedTake, IsFinishedOnceAndThenTheUsers) {
    recordAndDie();
    finishInterruptedTake(bundle);
    bundle.write(EditParams{});
    finishInterruptedTake(bundle);
    EXPECT_TRUE(bundle.readEdit().zoomKeyframes.empty());
}

TEST_F(InterruptedTake, KeepsALogThatTheStopHadWritten) {
    recordAndDie();
    EventLog stopped = header();
    stopped.micStartOffset = 0.25;
    stopped.cursorSamples = samples;
    stopped.events = {events[0], {12, InputEvent::EventType::leftClick, RelativePoint{}, std::nullopt}};
    bundle.write(stopped);
    finishInterruptedTake(bundle);
    EXPECT_EQ(bundle.readLog(), stopped);
    EXPECT_EQ(bundle.readEdit().zoomKeyframes.size(), 2U);
    EXPECT_FALSE(hasJournal());
}

TEST_F(InterruptedTake, IsFinishedEvenWhenItsFilesAreDamaged) {
    recordAndDie();
    std::ofstream(bundle.file(TakeBundle::eventsFile)) << "{";
    std::ofstream(bundle.file(TakeBundle::editFile)) << "";
    finishInterruptedTake(bundle);
    EXPECT_EQ(bundle.readLog().events, events);
    EXPECT_EQ(bundle.readEdit().zoomKeyframes.size(), 1U);
}

TEST_F(InterruptedTake, ThatIsStillBeingRecordedIsLeftAlone) {
    EventJournal journal = EventJournal::create(bundle, header());
    journal.append(samples, events);
    finishInterruptedTake(bundle);
    EXPECT_EQ(bundle.readLog(), EventLog{});
    EXPECT_TRUE(hasJournal());
}

TEST_F(InterruptedTake, ThatWasNotInterruptedIsLeftAlone) {
    EditParams edit;
    edit.zoomKeyframes = {{Uuid::random(), 1, 2, {}, 0.4, 0.8}};
    bundle.write(edit);
    finishInterruptedTake(bundle);
    EXPECT_EQ(bundle.readEdit(), edit);
}

}  // namespace
}  // namespace tessaloom
