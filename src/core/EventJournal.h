// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string_view>

#include "core/EventLog.h"
#include "core/FileDescriptor.h"
#include "core/TakeBundle.h"

namespace tessaloom {

/// The log of a running recording, kept on disk as it grows so that a recorder that dies loses next to
/// nothing. One JSON object per line: first the log's own values, then a line for each sample and event; any
/// prefix of it is valid. An exclusive lock on the file tells others that the recorder lives. One thread.
class EventJournal {
  public:
    /// Starts the journal with the values of `header` other than its lists. It is not on the disk before the
    /// first append, so that a recording that starts doesn't wait for that. Throws std::system_error, also
    /// when another recorder holds the journal.
    static EventJournal create(const TakeBundle& bundle, const EventLog& header);

    /// On disk when it returns. Throws std::system_error.
    void append(std::span<const CursorSample> samples, std::span<const InputEvent> events);

    /// From here on these values hold in place of those before; the lists are left out. On disk when it
    /// returns. Throws std::system_error.
    void replaceHeader(const EventLog& header);

    /// Deletes the file: the finished log has been stored. Throws std::system_error.
    void remove();

  private:
    EventJournal(std::filesystem::path path, FileDescriptor file);
    void write(std::string_view lines);

    std::filesystem::path path_;
    FileDescriptor file_;
};

/// The log in a bundle's journal as far as whole lines were written; unreadable lines are left out. Nothing
/// when there is no journal, or when its recorder is still alive. Throws std::system_error.
std::optional<EventLog> recoverJournal(const TakeBundle& bundle);

/// The same from the journal's content.
EventLog decodeJournal(std::string_view lines);

}  // namespace tessaloom
