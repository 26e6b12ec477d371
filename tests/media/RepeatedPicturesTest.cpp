// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures without motion, which the encoder is spared: what a player shows of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "media/MovieReader.h"
#include "media/MovieWriter.h"
#include "support/MovieProbe.h"
#include "support/SoundMaker.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

constexpr double frame = 1.0 / 60;
constexpr std::int64_t richly = 20'000'000;
/// Bytes that a repeated picture may take, in sizes like these.
constexpr int fewBytes = 40;

struct Shot {
    int picture = 0;
    PictureMotion motion = PictureMotion::still;
};

YuvImage texture(int width, int height, int seed) {
    YuvImage image(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.plane(0)[y * image.stride(0) + x] = static_cast<std::uint8_t>(
                128 + 60 * std::sin((x + 5 * seed) * 0.37) * std::cos((y - 3 * seed) * 0.23));
    return image;
}

class RepeatedPicturesTest : public ::testing::Test {
  protected:
    void write(const H264Settings& settings, const std::vector<Shot>& film) const {
        const auto writer =
            MovieWriter::create(path(), {.container = MovieWriter::Container::mp4, .video = settings});
        for (std::size_t n = 0; n < film.size(); ++n)
            writer->appendVideo(texture(settings.width, settings.height, film[n].picture),
                                static_cast<double>(n) * frame, frame, film[n].motion);
        writer->finish();
    }

    std::vector<BgraImage> shown() const {
        std::vector<BgraImage> pictures;
        const auto reader = MovieReader::open(path());
        while (const auto decoded = reader->next())
            decoded->toBgra(pictures.emplace_back());
        return pictures;
    }

    std::filesystem::path path() const { return folder_.path() / "film.mp4"; }

  private:
    test::TemporaryFolder folder_;
};

bool equal(const BgraImage& a, const BgraImage& b) {
    for (int y = 0; y < a.height(); ++y)
        if (!std::equal(a.row(y), a.row(y) + 4 * a.width(), b.row(y))) return false;
    return a.width() == b.width() && a.height() == b.height();
}

double likeness(const BgraImage& shown, const YuvImage& meant) {
    double squares = 0;
    for (int y = 0; y < shown.height(); ++y)
        for (int x = 0; x < shown.width(); ++x)
            squares += std::pow(
                shown.row(y)[4 * x] - (meant.plane(0)[y * meant.stride(0) + x] - 16) * 255.0 / 219, 2);
    return 10 * std::log10(255.0 * 255.0 * shown.width() * shown.height() / std::max(squares, 1.0));
}

/// Scenes of random length that rest, change a little or move.
std::vector<Shot> randomFilm(unsigned seed, std::size_t length) {
    std::mt19937 random(seed);
    std::vector<Shot> film(40, {.picture = 0, .motion = PictureMotion::still});
    for (int picture = 1; film.size() < length; ++picture) {
        film.push_back({picture, random() % 3 == 0 ? PictureMotion::moving : PictureMotion::still});
        film.insert(film.end(), random() % 4 == 0 ? random() % 80 : random() % 4,
                    {.picture = picture, .motion = PictureMotion::none});
    }
    return film;
}

TEST_F(RepeatedPicturesTest, PlayersShowEveryPictureInItsPlace) {
    for (const auto& [width, height] : {std::pair{160, 90}, {64, 64}, {210, 118}}) {
        const auto film = randomFilm(static_cast<unsigned>(width), 500);
        write(H264Settings::exported(width, height, richly), film);
        const auto facts = test::probeMovie(path());
        const auto pictures = shown();
        ASSERT_EQ(pictures.size(), film.size());
        ASSERT_EQ(facts.packets.size(), film.size());
        int repeats = 0;
        for (std::size_t n = 0; n < film.size(); ++n) {
            EXPECT_NEAR(facts.packets[n].time, static_cast<double>(n) * frame, 1e-5);
            EXPECT_GT(likeness(pictures[n], texture(width, height, film[n].picture)), 35) << n;
            if (!facts.packets[n].disposable) continue;
            EXPECT_EQ(film[n].motion, PictureMotion::none) << n;
            EXPECT_TRUE(equal(pictures[n], pictures[n - 1])) << n;
            ++repeats;
        }
        EXPECT_GT(repeats, 150) << "nothing was repeated";
    }
}

TEST_F(RepeatedPicturesTest, ALongRestTakesNextToNoRoomAndKeepsItsKeyFrames) {
    std::vector<Shot> film(1000, {.picture = 0, .motion = PictureMotion::none});
    std::fill_n(film.begin(), 40, Shot{});
    write(H264Settings::exported(160, 90, richly), film);
    const auto packets = test::probeMovie(path()).packets;
    ASSERT_EQ(packets.size(), 1000U);
    for (std::size_t n = 0; n < packets.size(); ++n) {
        EXPECT_EQ(packets[n].key, n % 250 == 0) << n;
        if (n < 40 || n % 250 == 0) continue;
        EXPECT_LE(packets[n].bytes, fewBytes) << n;
    }
}

TEST_F(RepeatedPicturesTest, APictureThatHasMovedComesToRestInDetail) {
    std::vector<Shot> film(60);
    for (int n = 0; n < 30; ++n)
        film.push_back({n, PictureMotion::moving});
    film.insert(film.end(), 30, {29, PictureMotion::none});
    write(H264Settings::exported(160, 90, richly), film);
    const auto pictures = shown();
    const YuvImage meant = texture(160, 90, 29);
    EXPECT_LT(likeness(pictures[89], meant), 45);
    EXPECT_GT(likeness(pictures[93], meant), 47);
    EXPECT_TRUE(equal(pictures[119], pictures[93]));
}

TEST_F(RepeatedPicturesTest, WithoutBitsToSpareWhatRestsIsImprovedNowAndThen) {
    std::vector<Shot> film;
    for (int n = 0; n < 60; ++n)
        film.push_back({n, PictureMotion::moving});
    film.insert(film.end(), 180, {59, PictureMotion::none});
    write(H264Settings::exported(160, 90, 60'000), film);
    const auto pictures = shown();
    const YuvImage meant = texture(160, 90, 59);
    EXPECT_GT(likeness(pictures.back(), meant), likeness(pictures[60], meant) + 3);
    const auto packets = test::probeMovie(path()).packets;
    const auto encoded = std::count_if(packets.begin() + 60, packets.end(),
                                       [](const auto& packet) { return !packet.disposable; });
    EXPECT_GT(encoded, 10);
    EXPECT_LT(encoded, 30);
}

TEST_F(RepeatedPicturesTest, AStreamOfAnotherKindIsEncodedWhole) {
    H264Settings settings = H264Settings::exported(160, 90, richly);
    settings.options.emplace_back("coder", "vlc");
    std::vector<Shot> film(80);
    film.insert(film.end(), 40, {0, PictureMotion::none});
    write(settings, film);
    const auto pictures = shown();
    ASSERT_EQ(pictures.size(), 120U);
    EXPECT_GT(likeness(pictures.back(), texture(160, 90, 0)), 45);
}

}  // namespace
}  // namespace tessaloom
