// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <thread>

#include "core/AtomicFile.h"
#include "desktop/DesktopRecording.h"
#include "support/XInjector.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

/// All that a running program has in memory and may be read.
std::string memoryOf(pid_t process) {
    const std::string folder = "/proc/" + std::to_string(process);
    std::ifstream maps(folder + "/maps");
    std::ifstream memory(folder + "/mem", std::ios::binary);
    std::string content;
    for (std::string line; std::getline(maps, line);) {
        std::istringstream fields(line);
        std::uint64_t start = 0;
        std::uint64_t end = 0;
        char dash = 0;
        std::string access;
        fields >> std::hex >> start >> dash >> end >> access;
        if (access.size() < 2 || access[0] != 'r' || access[1] != 'w') continue;
        std::string block(end - start, '\0');
        memory.seekg(static_cast<std::streamoff>(start));
        memory.read(block.data(), static_cast<std::streamsize>(block.size()));
        if (memory) content += block;
        memory.clear();
    }
    return content;
}

std::string filesOf(const TakeBundle& bundle) {
    std::string content;
    for (const auto& entry : std::filesystem::directory_iterator(bundle.url))
        content += readFile(entry.path());
    return content;
}

/// Each character's own label, one after the other, as a log of the typing would hold it in some form.
std::vector<std::string> tracesOf(const std::string& typed) {
    std::string upper = typed;
    std::ranges::transform(upper, upper.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    std::string wide;
    for (const char c : typed)
        wide += std::string{c, '\0'};
    return {typed, upper, wide};
}

class Privacy : public ::testing::Test {
  protected:
    const VirtualDesktop desktop_{640, 480};
    XInjector injector_{desktop_.displayName()};

    void tap(xcb_keycode_t key, const char* heldModifier) {
        const auto modifier =
            heldModifier == nullptr ? std::nullopt : injector_.keyboard().forSymbolName(heldModifier);
        if (modifier) injector_.pressKey(modifier->keycode);
        injector_.tapKey(key);
        if (modifier) injector_.releaseKey(modifier->keycode);
    }

    void type(const std::string& text) {
        const auto keyboard = injector_.keyboard();
        for (const char c : text) {
            const auto stroke = keyboard.forCharacter(static_cast<char32_t>(c));
            ASSERT_TRUE(stroke) << c;
            tap(stroke->keycode, stroke->shift ? "Shift_L" : nullptr);
        }
    }

    void expectNoTrace(DesktopRecording& recording, const std::string& typed) {
        // A journal in the middle of a recording is on disk too.
        std::this_thread::sleep_for(800ms);
        const std::string memory = memoryOf(recording.program().id());
        ASSERT_GT(memory.size(), 1'000'000U);
        const std::string during = filesOf(recording.bundle());
        const TakeBundle bundle = recording.stop();
        const std::string after = filesOf(bundle);
        for (const std::string& trace : tracesOf(typed)) {
            EXPECT_EQ(memory.find(trace), std::string::npos);
            EXPECT_EQ(during.find(trace), std::string::npos);
            EXPECT_EQ(after.find(trace), std::string::npos);
        }
        std::size_t presses = 0;
        for (const InputEvent& event : bundle.readLog().events) {
            ++presses;
            EXPECT_EQ(event.keyLabel.value_or(""), "");
        }
        EXPECT_GE(presses, typed.size()) << "the typing didn't reach the recorder";
    }
};

TEST_F(Privacy, ThisTestFindsWhatIsThere) {
    const DesktopRecording recording(desktop_, {"--duration", "30"});
    auto& program = const_cast<DesktopRecording&>(recording);
    EXPECT_NE(memoryOf(program.program().id()).find(recording.library().string()), std::string::npos);
}

TEST_F(Privacy, ATypedPasswordLeavesNoTrace) {
    DesktopRecording recording(desktop_);
    std::this_thread::sleep_for(100ms);
    ASSERT_NO_FATAL_FAILURE(type("xQzr7Kp!vW_9"));
    expectNoTrace(recording, "xQzr7Kp!vW_9");
}

TEST_F(Privacy, NorDoesOneWithAltGrOnAGermanLayout) {
    ASSERT_TRUE(setKeyboardLayout(desktop_.environment(), "de"));
    DesktopRecording recording(desktop_);
    std::this_thread::sleep_for(100ms);
    ASSERT_NO_FATAL_FAILURE(type("xQyr7Kp"));
    const auto keyboard = injector_.keyboard();
    // @, { and ] are on the third level there.
    for (const char* position : {"AD01", "AE07", "AE09"})
        tap(*keyboard.forPosition(position), "ISO_Level3_Shift");
    ASSERT_NO_FATAL_FAILURE(type("vW_9"));
    expectNoTrace(recording, "xQyr7Kp@{]vW_9");
}

}  // namespace
}  // namespace tessaloom::test
