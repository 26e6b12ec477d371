// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace tessaloom {
namespace {

namespace fs = std::filesystem;

/// Low to high: a folder includes only from itself and those before it.
const std::vector<std::string> layers{"core",   "motion",  "base",   "media",  "render", "take",
                                      "export", "capture", "speech", "editor", "agent",  "shell"};

struct Include {
    fs::path file;  ///< relative to src/
    std::string target;
    bool quoted = false;
};

bool isSource(const fs::path& path) {
    return path.extension() == ".h" || path.extension() == ".cpp";
}

std::vector<Include> includesOf(const fs::path& root, const fs::path& file) {
    static const std::regex pattern(R"re(^\s*#\s*include\s*([<"])([^>"]+)[>"])re");
    std::vector<Include> includes;
    std::ifstream input(file);
    for (std::string line; std::getline(input, line);) {
        std::smatch match;
        if (std::regex_search(line, match, pattern)) {
            includes.push_back({fs::relative(file, root), match[2], match[1] == "\""});
        }
    }
    return includes;
}

std::vector<Include> allIncludes() {
    const fs::path root = TESSALOOM_SOURCE_FOLDER;
    std::vector<Include> includes;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        if (!isSource(entry.path())) continue;
        const auto more = includesOf(root, entry.path());
        includes.insert(includes.end(), more.begin(), more.end());
    }
    return includes;
}

std::string folderOf(const fs::path& path) {
    return std::distance(path.begin(), path.end()) > 1 ? path.begin()->string() : std::string();
}

std::ptrdiff_t heightOf(const std::string& folder) {
    return std::distance(layers.begin(), std::ranges::find(layers, folder));
}

bool isKnownLayer(const std::string& folder) {
    return std::ranges::find(layers, folder) != layers.end();
}

TEST(Layering, EveryFolderHasItsPlaceInTheOrder) {
    std::set<std::string> strangers;
    for (const auto& entry : fs::directory_iterator(TESSALOOM_SOURCE_FOLDER)) {
        const std::string name = entry.path().filename().string();
        if (entry.is_directory() && name != "platform" && !isKnownLayer(name)) strangers.insert(name);
    }
    EXPECT_TRUE(strangers.empty()) << "not in the order: " << *strangers.begin();
}

TEST(Layering, NoFolderIncludesFromOneAboveIt) {
    std::size_t checked = 0;
    for (const Include& include : allIncludes()) {
        const std::string from = folderOf(include.file);
        const std::string to = folderOf(include.target);
        if (!include.quoted || !isKnownLayer(from) || !isKnownLayer(to)) continue;
        ++checked;
        EXPECT_LE(heightOf(to), heightOf(from)) << include.file << " includes " << include.target;
    }
    EXPECT_GT(checked, 100U) << "the include lines were not found";
}

TEST(Layering, OnlyMainSeesThePlatform) {
    for (const Include& include : allIncludes()) {
        const bool mayKnow = folderOf(include.file) == "platform" || include.file == "main.cpp";
        if (include.quoted && folderOf(include.target) == "platform") {
            EXPECT_TRUE(mayKnow) << include.file << " includes " << include.target;
        }
    }
}

TEST(Layering, OnlyMediaKnowsTheMediaLibrary) {
    for (const Include& include : allIncludes()) {
        const bool isMediaLibrary =
            include.target.starts_with("libav") || include.target.starts_with("libsw");
        EXPECT_TRUE(!isMediaLibrary || folderOf(include.file) == "media")
            << include.file << " includes " << include.target;
    }
}

TEST(Layering, CoreAndMotionNeedNoDesktop) {
    const std::set<std::string> systemHeaders{"fcntl.h", "unistd.h", "sys/file.h", "sys/stat.h", "errno.h"};
    for (const Include& include : allIncludes()) {
        const std::string from = folderOf(include.file);
        if (include.quoted || (from != "core" && from != "motion")) continue;
        const bool isStandard =
            include.target.find_first_of("./") == std::string::npos && include.target[0] != 'Q';
        const bool isJson = include.target.starts_with("rapidjson/");
        EXPECT_TRUE(isStandard || isJson || systemHeaders.contains(include.target))
            << include.file << " includes " << include.target;
    }
}

}  // namespace
}  // namespace tessaloom
