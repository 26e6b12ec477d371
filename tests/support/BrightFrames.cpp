// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/BrightFrames.h"

#include "media/MovieReader.h"
#include "support/PixelAt.h"

namespace tessaloom::test {

std::vector<std::size_t> brightFrames(const std::filesystem::path& movie, double x, double y) {
    const auto reader = MovieReader::open(movie);
    std::vector<std::size_t> bright;
    BgraImage image;
    for (std::size_t n = 0; const auto frame = reader->next(); ++n) {
        frame->toBgra(image);
        const auto place = [](double fraction, int length) { return static_cast<int>(fraction * length); };
        if (pixelAt(image, place(x, image.width()), place(y, image.height()))[1] > 128) bright.push_back(n);
    }
    return bright;
}

std::vector<std::size_t> flashes(const std::vector<std::size_t>& brightFrames) {
    std::vector<std::size_t> first;
    for (std::size_t i = 0; i < brightFrames.size(); ++i)
        if (i == 0 || brightFrames[i] != brightFrames[i - 1] + 1) first.push_back(brightFrames[i]);
    return first;
}

}  // namespace tessaloom::test
