// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FrameAudit.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "demo-scene/CounterCode.h"

namespace tessaloom::test {
namespace {

using demo::CounterCode::counterLimit;

constexpr double begin = 5000;
constexpr double refresh = 1.0 / 60;

/// Sixty paints a second, the first of them at `begin`.
std::vector<Paint> steadyPaints(unsigned count, unsigned firstCounter = 1) {
    std::vector<Paint> paints;
    for (unsigned i = 0; i < count; ++i)
        paints.push_back({begin + i * refresh, (firstCounter + i) % counterLimit});
    return paints;
}

/// A frame for each paint, at its time.
std::vector<RecordedFrame> framesOf(const std::vector<Paint>& paints) {
    std::vector<RecordedFrame> frames;
    for (const Paint& paint : paints)
        frames.push_back({paint.hostTime - begin, paint.counter});
    return frames;
}

TEST(FrameAudit, FindsNothingAmissInACompleteRecording) {
    const auto paints = steadyPaints(100);
    const FrameAudit audit = auditFrames(paints, framesOf(paints), begin);
    EXPECT_EQ(audit.paints, 100U);
    EXPECT_EQ(audit.frames, 100U);
    EXPECT_EQ(audit.lost + audit.repeated + audit.outOfOrder + audit.unreadable, 0U);
    EXPECT_NEAR(audit.longestDelay, 0, 1e-9);
}

TEST(FrameAudit, CountsWhatIsLostRepeatedOutOfOrderAndUnreadable) {
    const auto paints = steadyPaints(100);
    auto frames = framesOf(paints);
    frames[70].counter.reset();
    frames[50].counter = frames[40].counter;
    frames[31].counter = frames[30].counter;
    frames.erase(frames.begin() + 10, frames.begin() + 13);
    const FrameAudit audit = auditFrames(paints, frames, begin);
    EXPECT_EQ(audit.unreadable, 1U);
    EXPECT_EQ(audit.outOfOrder, 1U);
    EXPECT_EQ(audit.repeated, 1U);
    // Three frames are gone, and three show something else or nothing than their paints.
    EXPECT_EQ(audit.lost, 6U);
    EXPECT_EQ(audit.missed(), 6U);
}

TEST(FrameAudit, APaintThatHardlyStoodIsNotMissed) {
    auto paints = steadyPaints(100);
    paints[20].hostTime = paints[21].hostTime - 0.4 * refresh;
    auto frames = framesOf(paints);
    frames.erase(frames.begin() + 20);
    const FrameAudit audit = auditFrames(paints, frames, begin);
    EXPECT_EQ(audit.lost, 1U);
    EXPECT_EQ(audit.missed(), 0U);
}

TEST(FrameAudit, FollowsCountersThatWrapAround) {
    const auto paints = steadyPaints(2 * counterLimit, counterLimit - 100);
    // The recording begins long after the scene did.
    auto frames = framesOf(paints);
    frames.erase(frames.begin(), frames.begin() + 50);
    const FrameAudit audit = auditFrames(paints, frames, begin);
    EXPECT_EQ(audit.paints, 2 * counterLimit - 50U);
    EXPECT_EQ(audit.lost, 0U);
}

TEST(FrameAudit, TellsHowMuchLaterThanThePromptestFrameTheOthersAre) {
    const auto paints = steadyPaints(100);
    auto frames = framesOf(paints);
    for (auto& frame : frames)
        frame.time += 0.004;
    frames[60].time += 0.010;
    const FrameAudit audit = auditFrames(paints, frames, begin);
    EXPECT_NEAR(audit.longestDelay, 0.010, 1e-9);
    EXPECT_NEAR(audit.meanDelay, 0.0001, 1e-9);
}

TEST(FrameAudit, RefusesARecordingOfSomethingElse) {
    const auto paints = steadyPaints(100);
    const std::vector<RecordedFrame> frames{{0, std::nullopt}, {refresh, std::nullopt}};
    EXPECT_THROW(auditFrames(paints, frames, begin), std::runtime_error);
}

}  // namespace
}  // namespace tessaloom::test
