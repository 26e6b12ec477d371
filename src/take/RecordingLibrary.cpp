// SPDX-License-Identifier: GPL-3.0-or-later
#include "take/RecordingLibrary.h"

#include <algorithm>
#include <array>
#include <system_error>

namespace tessaloom {
namespace {

struct DatedBundle {
    std::filesystem::file_time_type changed;
    TakeBundle bundle;
};

/// A missing date counts as the distant past.
std::filesystem::file_time_type lastChange(const std::filesystem::path& path) {
    std::error_code failed;
    const auto time = std::filesystem::last_write_time(path, failed);
    return failed ? std::filesystem::file_time_type::min() : time;
}

bool isFolder(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
}

/// "folder/" names the same bundle as "folder".
TakeBundle bundleAt(const std::filesystem::path& path) {
    const auto whole = std::filesystem::absolute(path).lexically_normal();
    return {whole.has_filename() ? whole : whole.parent_path()};
}

}  // namespace

std::vector<TakeBundle> RecordingLibrary::recentBundles(std::size_t limit) const {
    std::vector<DatedBundle> found;
    std::error_code failed;
    for (auto entry = std::filesystem::directory_iterator(folder_, failed);
         !failed && entry != std::filesystem::directory_iterator(); entry.increment(failed)) {
        if (entry->path().extension() == TakeBundle::extension) {
            found.push_back({lastChange(entry->path()), {entry->path()}});
        }
    }
    std::ranges::stable_sort(found, std::greater(), &DatedBundle::changed);
    found.resize(std::min(found.size(), limit));
    std::vector<TakeBundle> bundles;
    std::ranges::transform(found, std::back_inserter(bundles), &DatedBundle::bundle);
    return bundles;
}

std::optional<TakeBundle> RecordingLibrary::find(const std::string& pathOrName) const {
    if (pathOrName.empty()) return std::nullopt;
    if (isFolder(pathOrName)) return bundleAt(pathOrName);
    if (pathOrName.find('/') != std::string::npos) return std::nullopt;
    for (const std::string& name : {pathOrName, pathOrName + std::string(TakeBundle::extension)}) {
        if (isFolder(folder_ / name)) return bundleAt(folder_ / name);
    }
    return std::nullopt;
}

bool isBundle(const std::filesystem::path& folder) {
    constexpr std::array files{TakeBundle::screenFile, TakeBundle::eventsFile, TakeBundle::editFile};
    return std::ranges::any_of(files, [&](std::string_view file) {
        std::error_code ignored;
        return std::filesystem::exists(folder / file, ignored);
    });
}

}  // namespace tessaloom
