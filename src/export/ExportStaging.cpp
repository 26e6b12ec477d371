// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ExportStaging.h"

#include <stdlib.h>

#include <string>
#include <system_error>
#include <utility>

namespace tessaloom {
namespace {

/// A new hidden folder beside `destination`, on the same volume so that the last step is a rename.
std::optional<std::filesystem::path> makeFolderBeside(const std::filesystem::path& destination) {
    std::string name = (destination.parent_path() / ".tessaloom-export-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) return std::nullopt;
    return name;
}

}  // namespace

ExportStaging::ExportStaging(std::filesystem::path destination)
    : destination_(std::move(destination)), folder_(makeFolderBeside(destination_)) {
    if (folder_) {
        url_ = *folder_ / destination_.filename();
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
