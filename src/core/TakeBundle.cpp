// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/TakeBundle.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "core/AtomicFile.h"

namespace tessaloom {
namespace {

bool isThere(const std::filesystem::path& path) {
    std::error_code unreadable;
    return std::filesystem::exists(path, unreadable);
}

}  // namespace

std::string TakeBundle::folderName(std::chrono::local_seconds start) {
    const auto day = std::chrono::floor<std::chrono::days>(start);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss time(start - day);
    std::array<char, 64> name{};
    std::snprintf(name.data(), name.size(), "Recording %04d-%02u-%02u at %02d.%02d.%02d%s",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                  static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
                  extension.data());
    return name.data();
}

TakeBundle TakeBundle::create(const std::filesystem::path& url) {
    std::error_code error;
    if (!std::filesystem::create_directory(url, error)) {
        if (!error) error = std::make_error_code(std::errc::file_exists);
        throw std::system_error(error, "Can't create the recording folder \"" + url.string() + "\"");
    }
    TakeBundle bundle{url};
    // A recording that is about to start doesn't wait for the disk, and an empty log and a fresh edit are
    // what a file that was lost reads as.
    writeNewFile(bundle.file(editFile), encode(EditParams{}));
    writeNewFile(bundle.file(eventsFile), encode(EventLog{}));
    return bundle;
}

void TakeBundle::write(const EditParams& edit) const {
    replaceFile(file(editFile), encode(edit));
}

void TakeBundle::write(const EventLog& log) const {
    replaceFile(file(eventsFile), encode(log));
}

EditParams TakeBundle::readEdit() const {
    return decodeEditParams(readFile(file(editFile)));
}

EventLog TakeBundle::readLog() const {
    return decodeEventLog(readFile(file(eventsFile)));
}

void TakeBundle::removeEmptyMedia() const {
    for (const auto name : {screenFile, microphoneFile, webcamFile}) {
        std::error_code ignored;
        if (std::filesystem::file_size(file(name), ignored) == 0)
            std::filesystem::remove(file(name), ignored);
    }
}

bool TakeBundle::hasWebcam() const {
    return isThere(file(webcamFile));
}

bool TakeBundle::hasMic() const {
    return isThere(file(microphoneFile));
}

bool TakeBundle::hasEnhancedAudio() const {
    return isThere(file(enhancedAudioFile));
}

bool TakeBundle::hasMatte() const {
    return isThere(file(matteFile));
}

}  // namespace tessaloom
