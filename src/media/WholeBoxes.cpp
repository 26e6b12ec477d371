// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/WholeBoxes.h"

#include <array>
#include <fstream>
#include <string>
#include <system_error>

namespace tessaloom {
namespace {

struct Box {
    std::string kind;
    std::uint64_t size = 0;
};

std::optional<std::uint64_t> readNumber(std::istream& file, int bytes) {
    std::uint64_t number = 0;
    for (int i = 0; i < bytes; ++i)
        number = number << 8 | static_cast<std::uint8_t>(file.get());
    return file ? std::optional(number) : std::nullopt;
}

/// Nothing where less than a header is left, or a box without an end begins.
std::optional<Box> readHeader(std::istream& file) {
    constexpr std::uint64_t leastSize = 8;
    auto size = readNumber(file, 4);
    std::array<char, 4> kind{};
    file.read(kind.data(), kind.size());
    // Then the size has a longer form.
    if (size == 1) size = readNumber(file, 8);
    if (!file || !size || *size < leastSize) return std::nullopt;
    return Box{{kind.begin(), kind.end()}, *size};
}

}  // namespace

std::optional<std::uint64_t> endOfWholeBoxes(const std::filesystem::path& path) {
    std::error_code failed;
    const std::uint64_t fileSize = std::filesystem::file_size(path, failed);
    std::ifstream file(path, std::ios::binary);
    if (failed || !file) return std::nullopt;
    bool hasIndex = false;
    std::uint64_t end = 0;
    while (const auto box = readHeader(file)) {
        if (box->size > fileSize - end) break;
        hasIndex = hasIndex || box->kind == "moov";
        end += box->size;
        file.seekg(static_cast<std::streamoff>(end));
    }
    return hasIndex && end < fileSize ? std::optional(end) : std::nullopt;
}

}  // namespace tessaloom
