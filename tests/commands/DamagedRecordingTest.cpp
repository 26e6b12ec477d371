// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <random>

#include "commands/CommandTest.h"
#include "support/MovieMaker.h"
#include "support/MovieProbe.h"

namespace tessaloom::test {
namespace {

namespace fs = std::filesystem;

std::string randomBytes(std::size_t count) {
    std::mt19937 random(7);
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes.push_back(static_cast<char>(random()));
    return bytes;
}

class DamagedRecordingTest : public CommandTest {
  protected:
    CommandResult exported() const { return run({"export", "take", "-o", film_.string()}); }
    CommandResult drawn() const { return run({"frame", "take", "--at", "0", "-o", picture_.string()}); }

    void expectBothRefused(const std::string& part) const {
        for (const CommandResult& result : {exported(), drawn()}) {
            expectRefused(result, 1, part);
            EXPECT_NE(result.errors.find("Restore it from a copy, or record again."), std::string::npos);
        }
        EXPECT_TRUE(outputNames().empty());
    }

    TakeBundle bundle_ = makeRecording("take");
    fs::path movie_ = bundle_.file(TakeBundle::screenFile);
    fs::path film_ = outputs() / "film.mp4";
    fs::path picture_ = outputs() / "picture.png";
};

TEST_F(DamagedRecordingTest, AMissingMovieIsNamed) {
    fs::remove(movie_);
    expectBothRefused("\"screen.mov\" can't be read: No such file or directory.");
    fs::create_directory(movie_);
    expectBothRefused("\"screen.mov\" can't be read: Is a directory.");
}

TEST_F(DamagedRecordingTest, AMovieThatIsNoneIsNamed) {
    for (const std::string& content :
         {std::string(), std::string("words, words, words\n"), randomBytes(20'000)}) {
        writeFile(movie_, content);
        expectBothRefused("\"screen.mov\" can't be read: ");
    }
}

TEST_F(DamagedRecordingTest, AMovieThatWasCutOffIsExportedWithOneWarning) {
    writeRecordedMovie(movie_, 64, 36, plainPictures(100, 10, pureGreen));
    fs::resize_file(movie_, fs::file_size(movie_) / 2);
    const CommandResult result = exported();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
    EXPECT_EQ(result.errors.find("tessaloom: \"screen.mov\" was cut off. What is left of it ends at "), 0U)
        << result.errors;
    EXPECT_EQ(outputNames(), std::vector<std::string>{"film.mp4"});
}

TEST_F(DamagedRecordingTest, AMovieOfSoundOnlyIsNamed) {
    writeSoundFile(movie_);
    expectBothRefused("no video track.");
}

TEST_F(DamagedRecordingTest, AMovieCutOffAnywhereIsExportedAsFarAsItGoesOrRefused) {
    const std::string whole = contentOf(movie_);
    ASSERT_GT(whole.size(), 1000U);
    int filmed = 0;
    constexpr std::size_t cuts = 24;
    for (std::size_t cut = 1; cut < cuts; ++cut) {
        writeFile(movie_, std::string_view(whole).substr(0, whole.size() * cut / cuts));
        const CommandResult result = exported();
        if (result.status == 0) {
            ++filmed;
            EXPECT_EQ(result.output, film_.string() + "\n");
            EXPECT_FALSE(probeMovie(film_).packets.empty());
            fs::remove(film_);
        } else {
            expectRefused(result, 1, "Restore it from a copy");
        }
        EXPECT_TRUE(outputNames().empty()) << "cut at " << cut;
    }
    EXPECT_GT(filmed, 0);
    EXPECT_LT(filmed, static_cast<int>(cuts) - 1);
}

TEST_F(DamagedRecordingTest, ADamagedJsonFileIsAWarningAndTheWholeMovieIsExported) {
    const std::pair<std::string_view, const char*> files[] = {
        {TakeBundle::editFile, R"(The recording's "edit.json" can't be read)"},
        {TakeBundle::eventsFile, R"(The recording's "events.json" can't be read)"}};
    for (const auto& [file, warning] : files) {
        const std::string sound = contentOf(bundle_.file(file));
        for (const char* content : {"", "{ \"version\": 1", "[]", "null", "\xff\xfe\x00"}) {
            writeFile(bundle_.file(file), content);
            const CommandResult result = exported();
            EXPECT_EQ(result.status, 0);
            EXPECT_EQ(result.output, film_.string() + "\n");
            EXPECT_TRUE(result.errors.starts_with(std::string("tessaloom: ") + warning)) << result.errors;
            EXPECT_EQ(result.errors.find('\n'), result.errors.size() - 1) << result.errors;
            EXPECT_EQ(probeMovie(film_).packets.size(), 55U);
            EXPECT_EQ(contentOf(bundle_.file(file)), content);
        }
        writeFile(bundle_.file(file), sound);
    }
}

TEST_F(DamagedRecordingTest, AMovieAloneIsARecording) {
    fs::remove(bundle_.file(TakeBundle::editFile));
    fs::remove(bundle_.file(TakeBundle::eventsFile));
    const CommandResult film = exported();
    EXPECT_EQ(film.status, 0);
    EXPECT_EQ(std::ranges::count(film.errors, '\n'), 1) << film.errors;
    EXPECT_EQ(probeMovie(film_).packets.size(), 55U);
    const CommandResult frame = drawn();
    EXPECT_EQ(frame.status, 0);
    EXPECT_EQ(frame.output, picture_.string() + "\n");
}

}  // namespace
}  // namespace tessaloom::test
