// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>

#include "core/EditParams.h"
#include "core/EventLog.h"

namespace tessaloom {

/// The location of one recording: a folder of raw media and two JSON files. It has no other state; every
/// question is answered by looking at the disk.
struct TakeBundle {
    static constexpr std::string_view extension = ".takes";
    static constexpr std::string_view screenFile = "screen.mov";
    static constexpr std::string_view microphoneFile = "audio.m4a";
    static constexpr std::string_view webcamFile = "webcam.mov";
    static constexpr std::string_view eventsFile = "events.json";
    static constexpr std::string_view editFile = "edit.json";
    static constexpr std::string_view enhancedAudioFile = "audio-enhanced.m4a";
    static constexpr std::string_view matteFile = "webcam-matte.mov";
    static constexpr std::string_view journalFile = "events.journal";

    std::filesystem::path url;

    /// "Recording 2026-11-15 at 14.05.09.takes" for a start in local time.
    static std::string folderName(std::chrono::local_seconds start);

    /// Makes the folder, whose parent must exist, with a fresh edit and an empty log in it. Throws
    /// std::system_error.
    static TakeBundle create(const std::filesystem::path& url);

    std::filesystem::path file(std::string_view name) const { return url / name; }

    /// Replace the stored edit or log in one step: a reader finds the old one or the new one, also after a
    /// power cut. Throw std::system_error.
    void write(const EditParams& edit) const;
    void write(const EventLog& log) const;

    /// Throw std::system_error when the file can't be read and DecodeError when it is no JSON object.
    EditParams readEdit() const;
    EventLog readLog() const;

    /// A recorder that ends too soon, or a full disk, leaves recorded files in which nothing was written yet.
    /// They are removed, so that nobody takes them for sound or pictures.
    void removeEmptyMedia() const;

    /// Presence of the file only, readable or not.
    bool hasWebcam() const;
    bool hasMic() const;
    bool hasEnhancedAudio() const;
    bool hasMatte() const;

    bool operator==(const TakeBundle&) const = default;
};

}  // namespace tessaloom
