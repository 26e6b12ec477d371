// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ExportStaging.h"

#include <fcntl.h>
#include <stdlib.h>

#include <cerrno>
#include <chrono>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace tessaloom {
namespace {

constexpr std::string_view folderPrefix = ".tessaloom-export-";
/// A younger folder may not be locked yet.
constexpr std::chrono::minutes youngestAbandoned{1};

/// A new hidden folder beside `destination`, on the same volume so that the last step is a rename. Nothing
/// where that isn't allowed; writing the file itself may be.
std::optional<std::filesystem::path> makeFolderBeside(const std::filesystem::path& destination) {
    std::string name = (destination.parent_path() / folderPrefix).string() + "XXXXXX";
    if (mkdtemp(name.data()) != nullptr) return name;
    const int reason = errno;
    if (reason == EACCES || reason == EPERM || reason == EROFS) return std::nullopt;
    throw std::system_error(reason, std::generic_category(),
                            "\"" + destination.string() + "\" can't be written");
}

/// Nothing when another process holds the lock, or where there are no locks.
std::optional<FileDescriptor> lockFolder(const std::filesystem::path& folder) {
    try {
        auto descriptor = FileDescriptor::open(folder, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
        if (descriptor.tryLock()) return descriptor;
    } catch (const std::system_error&) {
    }
    return std::nullopt;
}

void removeIfAbandoned(const std::filesystem::path& folder) {
    std::error_code failed;
    const auto changed = std::filesystem::last_write_time(folder, failed);
    if (failed || std::filesystem::file_time_type::clock::now() - changed < youngestAbandoned) return;
    if (lockFolder(folder)) std::filesystem::remove_all(folder, failed);
}

void removeAbandonedFolders(const std::filesystem::path& parent) {
    std::error_code failed;
    for (auto entry = std::filesystem::directory_iterator(parent, failed);
         !failed && entry != std::filesystem::directory_iterator(); entry.increment(failed)) {
        if (entry->path().filename().string().starts_with(folderPrefix)) removeIfAbandoned(entry->path());
    }
}

}  // namespace

ExportStaging::ExportStaging(std::filesystem::path destination)
    : destination_(std::move(destination)), folder_(makeFolderBeside(destination_)) {
    if (folder_) {
        url_ = *folder_ / destination_.filename();
        lock_ = lockFolder(*folder_).value_or(FileDescriptor());
        removeAbandonedFolders(destination_.parent_path());
        return;
    }
    url_ = destination_;
    std::error_code ignored;
    std::filesystem::remove(destination_, ignored);
}

ExportStaging::~ExportStaging() {
    discard();
}

void ExportStaging::commit() {
    std::error_code error;
    if (url_ == destination_) {
        settled_ = true;
    } else {
        std::filesystem::rename(url_, destination_, error);
        discard();
    }
    if (error) throw std::system_error(error, "\"" + destination_.string() + "\" can't be replaced");
}

void ExportStaging::discard() noexcept {
    if (std::exchange(settled_, true)) return;
    std::error_code ignored;
    std::filesystem::remove_all(folder_.value_or(destination_), ignored);
}

}  // namespace tessaloom
