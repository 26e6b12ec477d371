// SPDX-License-Identifier: GPL-3.0-or-later
#include <rapidjson/document.h>

#include <chrono>
#include <regex>
#include <set>

#include "commands/CommandTest.h"
#include "support/MovieMaker.h"

namespace tessaloom::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

using ListCommandTest = CommandTest;
using InfoCommandTest = CommandTest;

rapidjson::Document parsed(const CommandResult& result) {
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    rapidjson::Document document;
    EXPECT_FALSE(document.Parse(result.output.c_str()).HasParseError()) << result.output;
    return document;
}

void expectDescription(const rapidjson::Value& value, const fs::path& bundle) {
    ASSERT_TRUE(value.IsObject());
    std::set<std::string> keys;
    for (const auto& member : value.GetObject())
        keys.insert(member.name.GetString());
    EXPECT_EQ(keys, (std::set<std::string>{"recording_id", "created", "duration_seconds", "has_camera",
                                           "has_microphone", "has_captions", "path"}));
    EXPECT_EQ(value["recording_id"].GetString(), bundle.stem().string());
    EXPECT_EQ(value["path"].GetString(), bundle.string());
    static const std::regex date(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ)");
    EXPECT_TRUE(std::regex_match(value["created"].GetString(), date)) << value["created"].GetString();
}

TEST_F(InfoCommandTest, JsonDescribesTheRecording) {
    const TakeBundle bundle = makeRecording("take");
    writeFile(bundle.file(TakeBundle::webcamFile), "");
    EditParams edit;
    edit.captions.emplace_back();
    bundle.write(edit);
    for (const std::string& name :
         {std::string("take"), std::string("take.takes"), bundle.url.string() + "/"}) {
        const auto info = parsed(run({"info", name, "--json"}));
        expectDescription(info, bundle.url);
        EXPECT_DOUBLE_EQ(info["duration_seconds"].GetDouble(), 0.9);
        EXPECT_TRUE(info["has_camera"].GetBool());
        EXPECT_FALSE(info["has_microphone"].GetBool());
        EXPECT_TRUE(info["has_captions"].GetBool());
    }
}

TEST_F(InfoCommandTest, TextSaysTheSame) {
    const TakeBundle bundle = makeRecording("take");
    const CommandResult result = run({"info", "take"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(result.output.starts_with("Name        take\nCreated     20")) << result.output;
    EXPECT_TRUE(result.output.ends_with("Camera      no\nMicrophone  no\nCaptions    no\nPath        " +
                                        bundle.url.string() + "\n"))
        << result.output;
}

TEST_F(InfoCommandTest, WhatIsNoRecordingIsRefused) {
    fs::create_directory(library() / "empty.takes");
    writeFile(library() / "file.takes", "words");
    for (const char* name : {"nowhere", "file", "", "./nowhere", "/nowhere/at all"})
        expectRefused(run({"info", name}), 1, std::string("No recording called \"") + name + "\". Run \"");
    expectRefused(run({"info", "empty"}), 1, "\"empty\" is no recording");
    expectRefused(run({"info", outputs().string()}), 1, "is no recording");
}

TEST_F(ListCommandTest, TheNewestComesFirst) {
    const auto now = fs::file_time_type::clock::now();
    for (int hour = 1; hour <= 3; ++hour)
        fs::last_write_time(makeRecording(std::to_string(hour) + " h old").url, now - hour * 1h);
    const CommandResult text = run({"list"});
    EXPECT_EQ(text.output, "1 h old     0.9 s\n2 h old     0.9 s\n3 h old     0.9 s\n");
    const auto list = parsed(run({"list", "--json"}));
    ASSERT_EQ(list.Size(), 3U);
    for (unsigned i = 0; i < 3; ++i)
        expectDescription(list[i], library() / (std::to_string(i + 1) + " h old.takes"));
}

TEST_F(ListCommandTest, ALibraryWithoutRecordingsIsAnEmptyList) {
    writeFile(folder_.path() / "file", "words");
    for (const char* name : {"library", "nowhere", "file", "file/below"}) {
        environment_["TESSALOOM_LIBRARY"] = (folder_.path() / name).string();
        EXPECT_EQ(parsed(run({"list", "--json"})).Size(), 0U) << name;
        EXPECT_EQ(run({"list"}).output, "") << name;
    }
}

TEST_F(ListCommandTest, OnlyRecordingsAreListed) {
    makeRecording("take");
    fs::create_directory(library() / "empty.takes");
    fs::create_directory(library() / "folder");
    writeFile(library() / "file.takes", "words");
    writeFile(library() / "notes.txt", "words");
    EXPECT_EQ(run({"list"}).output, "take     0.9 s\n");
}

TEST_F(ListCommandTest, DamagedRecordingsAreListedWithWhatIsKnown) {
    const fs::path missing = makeRecording("missing").url;
    fs::remove(missing / "screen.mov");
    writeFile(makeRecording("empty").file(TakeBundle::screenFile), "");
    writeFile(makeRecording("text").file(TakeBundle::screenFile), "words, words, words");
    writeFile(makeRecording("edit").file(TakeBundle::editFile), "[");
    writeSoundFile(makeRecording("sound").file(TakeBundle::screenFile));
    fs::remove(makeRecording("no json").file(TakeBundle::editFile));
    const auto list = parsed(run({"list", "--json"}));
    ASSERT_EQ(list.Size(), 6U);
    for (const auto& entry : list.GetArray()) {
        expectDescription(entry, entry["path"].GetString());
        const std::string name = entry["recording_id"].GetString();
        EXPECT_DOUBLE_EQ(entry["duration_seconds"].GetDouble(), name == "edit" || name == "no json" ? 0.9 : 0)
            << name;
        EXPECT_FALSE(entry["has_captions"].GetBool());
    }
}

}  // namespace
}  // namespace tessaloom::test
