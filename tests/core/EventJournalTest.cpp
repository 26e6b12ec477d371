// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/EventJournal.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <system_error>
#include <vector>

#include "core/AtomicFile.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

const std::vector<CursorSample> samples{{0.5, 0.1, 0.2}, {1.5, 1.0 / 3, 0.4}};
const std::vector<InputEvent> events{
    {1, InputEvent::EventType::leftClick, RelativePoint{0.5, 0.25}, std::nullopt},
    {2, InputEvent::EventType::keyDown, std::nullopt, "⌃S"}};

EventLog header() {
    EventLog log;
    log.streamStartHostTime = 18446744073709551615U;
    log.captureRect = {10, 20, 1280, 720, 1};
    log.micStartOffset = -0.25;
    return log;
}

EventLog expected() {
    EventLog log = header();
    log.cursorSamples = samples;
    log.events = events;
    return log;
}

TEST(EventJournal, HoldsTheLogAsFarAsItWasWritten) {
    const test::TemporaryFolder folder;
    const TakeBundle bundle{folder.path()};
    {
        EventJournal journal = EventJournal::create(bundle, header());
        journal.append(std::span(samples).first(1), {});
        journal.append(std::span(samples).last(1), std::span(events).first(1));
        journal.append({}, std::span(events).last(1));
    }
    EXPECT_EQ(recoverJournal(bundle), expected());
}

TEST(EventJournal, ValuesThatAreKnownLaterReplaceTheFirstOnes) {
    const test::TemporaryFolder folder;
    const TakeBundle bundle{folder.path()};
    {
        EventJournal journal = EventJournal::create(bundle, EventLog{});
        journal.append(samples, {});
        journal.replaceHeader(expected());
        journal.append({}, events);
    }
    EXPECT_EQ(recoverJournal(bundle), expected());
}

TEST(EventJournal, IsLeftAloneWhileItsRecorderLives) {
    const test::TemporaryFolder folder;
    const TakeBundle bundle{folder.path()};
    const EventJournal journal = EventJournal::create(bundle, header());
    EXPECT_EQ(recoverJournal(bundle), std::nullopt);
    EXPECT_THROW(EventJournal::create(bundle, header()), std::system_error);
    EXPECT_NE(readFile(bundle.file("events.journal")).find("captureRect"), std::string::npos)
        << "the refused one must not empty it";
}

TEST(EventJournal, ThatWasRemovedOrNeverMadeGivesNothing) {
    const test::TemporaryFolder folder;
    const TakeBundle bundle{folder.path()};
    EXPECT_EQ(recoverJournal(bundle), std::nullopt);
    EventJournal::create(bundle, header()).remove();
    EXPECT_FALSE(std::filesystem::exists(bundle.file("events.journal")));
    EXPECT_EQ(recoverJournal(bundle), std::nullopt);
}

TEST(EventJournal, StartsAfreshOverADeadOne) {
    const test::TemporaryFolder folder;
    const TakeBundle bundle{folder.path()};
    EventJournal::create(bundle, header()).append(samples, events);
    EventJournal::create(bundle, EventLog{}).append(std::span(samples).first(1), {});
    EventLog log;
    log.cursorSamples = {samples[0]};
    EXPECT_EQ(recoverJournal(bundle), log);
}

// The child is gone before it can close anything.
TEST(EventJournal, OutlivesItsRecordersSuddenDeath) {
    const test::TemporaryFolder folder;
    const TakeBundle bundle{folder.path()};
    const pid_t child = fork();
    if (child == 0) {
        EventJournal journal = EventJournal::create(bundle, header());
        journal.append(samples, events);
        std::raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(recoverJournal(bundle), expected());
}

TEST(EventJournal, ABatchTornByAFullDiskCostsNoneOfTheNext) {
    const test::TemporaryFolder folder;
    const TakeBundle bundle{folder.path()};
    {
        EventJournal journal = EventJournal::create(bundle, header());
        std::ofstream(bundle.file("events.journal"), std::ios::app) << "{\"pts\":0.25,\"x";
        journal.append(samples, events);
    }
    EXPECT_EQ(recoverJournal(bundle), expected());
}

TEST(EventJournal, AnyPrefixGivesItsWholeLines) {
    const test::TemporaryFolder folder;
    const TakeBundle bundle{folder.path()};
    EventJournal::create(bundle, header()).append(samples, events);
    const std::string content = readFile(bundle.file("events.journal"));
    std::size_t records = 0;
    for (std::size_t length = 0; length <= content.size(); ++length) {
        const EventLog log = decodeJournal(std::string_view(content).substr(0, length));
        const std::size_t now = log.cursorSamples.size() + log.events.size();
        ASSERT_GE(now, records);
        ASSERT_LE(now, records + 1);
        records = now;
        ASSERT_EQ(log.cursorSamples.size(), std::min<std::size_t>(records, 2));
    }
    EXPECT_EQ(decodeJournal(content), expected());
}

TEST(EventJournal, ATornLineIsDropped) {
    const EventLog log = decodeJournal("{\"pts\":1,\"x\":0.5,\"y\":0.5}\n{\"pts\":2}");
    EXPECT_EQ(log.cursorSamples, (std::vector<CursorSample>{{1, 0.5, 0.5}})) << "even one that reads well";
}

TEST(EventJournal, UnreadableLinesCostOnlyThemselves) {
    const EventLog log = decodeJournal(
        "\n{\"captureRect\":{\"width\":640},\"version\":\"x\"}\n{\"pts\":1}\n{\"pts\":2,\"ty\n"
        "{\"pts\":3,\"type\":\"wink\"}\n[1]\n{\"x\":1}\n{\"pts\":4,\"type\":\"scroll\"}\n");
    EXPECT_EQ(log.captureRect.width, 640);
    EXPECT_EQ(log.version, 1);
    EXPECT_EQ(log.cursorSamples, (std::vector<CursorSample>{{1, 0, 0}}));
    ASSERT_EQ(log.events.size(), 1U);
    EXPECT_EQ(log.events[0].pts, 4);
}

}  // namespace
}  // namespace tessaloom
