// SPDX-License-Identifier: GPL-3.0-or-later
#include "commands/CommandTest.h"

namespace tessaloom::test {
namespace {

struct CommandHelp {
    std::string command;
    std::vector<std::string> mentioned;
};

const std::vector<CommandHelp> commandHelps{
    {"record", {"--display", "--area", "--window", "--title", "--pick", "--countdown", "--duration"}},
    {"export", {"-o", "--format", "--resolution", "--shape", "--quality", "--fps", "--loop"}},
    {"frame", {"--at", "--size", "-o"}},
    {"list", {"--json"}},
    {"info", {"--json"}},
    {"inspect", {"--duration", "--zoom-factor", "--at", "--size"}}};

using HelpTest = CommandTest;

TEST_F(HelpTest, TheOverviewNamesEachCommand) {
    for (const char* word : {"--help", "-h", "help"}) {
        const CommandResult result = run({word});
        EXPECT_EQ(result.status, 0) << word;
        EXPECT_EQ(result.errors, "") << word;
        for (const auto& [command, mentioned] : commandHelps)
            EXPECT_NE(result.output.find("\n  " + command + ' '), std::string::npos) << command;
    }
}

TEST_F(HelpTest, EachCommandTellsItsOptionsAndDoesNothing) {
    for (const auto& [command, mentioned] : commandHelps) {
        const CommandResult result = run({command, "--help"});
        EXPECT_EQ(result.status, 0) << command;
        EXPECT_EQ(result.errors, "") << command;
        EXPECT_TRUE(result.output.starts_with("Usage: tessaloom " + command + ' ')) << result.output;
        for (const std::string& option : mentioned)
            EXPECT_NE(result.output.find("\n  " + option + ' '), std::string::npos) << command << option;
    }
    EXPECT_TRUE(namesIn(library()).empty());
}

TEST_F(HelpTest, HelpWinsOverOtherArguments) {
    EXPECT_EQ(run({"export", "no such recording", "--bogus", "-h"}).status, 0);
}

TEST_F(HelpTest, TheVersionIsOneLine) {
    const CommandResult result = run({"--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.output.starts_with("tessaloom ")) << result.output;
    EXPECT_EQ(result.output.find('\n'), result.output.size() - 1);
}

TEST_F(HelpTest, AnUnknownCommandIsAUsageErrorWithTheOverview) {
    for (const char* word : {"bogus", "--bogus", "Record"}) {
        const CommandResult result = run({word});
        EXPECT_EQ(result.status, 2) << word;
        EXPECT_EQ(result.output, "") << word;
        EXPECT_TRUE(
            result.errors.starts_with(std::string("tessaloom: There is no command \"") + word + "\".\n"));
        EXPECT_NE(result.errors.find("Usage: tessaloom COMMAND"), std::string::npos);
    }
}

TEST_F(HelpTest, WrongArgumentsAreUsageErrorsThatPointToTheHelp) {
    const std::vector<std::vector<std::string>> cases{
        {"record", "--bogus"},
        {"record", "--duration", "soon"},
        {"record", "--area", "1,2"},
        {"record", "now"},
        {"export"},
        {"export", "a", "b"},
        {"export", "a", "-o"},
        {"export", "a", "-o", "film.mov"},
        {"export", "a", "--shape", "round"},
        {"frame", "a", "-o", "a.png"},
        {"frame", "a", "--at", "1"},
        {"frame", "a", "--at", "1", "-o", "a.jpg"},
        {"frame", "a", "--at", "1", "-o", "a.png", "--size", "0x9"},
        {"list", "a"},
        {"list", "--all"},
        {"info"},
        {"info", "a", "b"}};
    for (const auto& words : cases)
        expectRefused(run(words), 2, " See \"tessaloom " + words.front() + " --help\".\n");
}

}  // namespace
}  // namespace tessaloom::test
