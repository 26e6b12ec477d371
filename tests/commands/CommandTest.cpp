// SPDX-License-Identifier: GPL-3.0-or-later
#include "commands/CommandTest.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "support/MovieMaker.h"

namespace tessaloom::test {

CommandTest::CommandTest() {
    std::filesystem::create_directory(library());
    std::filesystem::create_directory(outputs());
    for (const char* inherited :
         {"DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "TESSALOOM_RENDERER", "TESSALOOM_VERBOSE"})
        environment_.erase(inherited);
    environment_["TESSALOOM_LIBRARY"] = library().string();
    environment_["TESSALOOM_CONFIG"] = (folder_.path() / "settings.ini").string();
    environment_["XDG_STATE_HOME"] = (folder_.path() / "state").string();
    environment_["TZ"] = "UTC";
}

std::vector<std::string> CommandTest::command(const std::vector<std::string>& arguments) {
    std::vector<std::string> words{TESSALOOM_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

CommandResult CommandTest::run(const std::vector<std::string>& arguments) const {
    ChildProcess process(command(arguments), environment_);
    return finished(process);
}

CommandResult CommandTest::finished(ChildProcess& process) {
    const int status = process.waitForExit(std::chrono::seconds(20)).value_or(-1);
    return {status, process.output(), process.errors()};
}

TakeBundle CommandTest::makeRecording(const std::string& name) const {
    const auto bundle = TakeBundle::create(library() / (name + ".takes"));
    writeRecordedMovie(bundle.file(TakeBundle::screenFile), 64, 36, plainPictures(10, 10, pureGreen));
    return bundle;
}

std::vector<std::string> CommandTest::outputNames() const {
    return namesIn(outputs());
}

std::vector<std::string> namesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
}

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeFile(const std::filesystem::path& file, std::string_view content) {
    std::ofstream(file, std::ios::binary) << content;
}

void expectRefused(const CommandResult& result, int status, const std::string& part) {
    EXPECT_EQ(result.status, status);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(result.errors.starts_with("tessaloom: ")) << result.errors;
    EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
    EXPECT_NE(result.errors.find(part), std::string::npos) << result.errors;
}

}  // namespace tessaloom::test
