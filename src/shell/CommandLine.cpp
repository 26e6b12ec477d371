// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/CommandLine.h"

#include <algorithm>
#include <array>
#include <exception>
#include <iostream>
#include <system_error>

#include "export/Exporter.h"
#include "media/MediaError.h"
#include "shell/ExportCommand.h"
#include "shell/FrameCommand.h"
#include "shell/InspectCommand.h"
#include "shell/ListCommands.h"
#include "shell/RecordCommand.h"

namespace tessaloom {
namespace {

struct Command {
    const char* name;
    const char* summary;
    const char* help;
    ExitStatus (*run)(const QStringList& words, const CommandServices& services);
};

constexpr std::array commands = {
    Command{"record", "record the screen",
            R"(Usage: tessaloom record [--display N | --area X,Y,W,H|select | --window APP [--title TEXT]
                         | --pick]
                        [--microphone|--no-microphone] [--camera|--no-camera]
                        [--system-audio|--no-system-audio] [--countdown S] [--duration S]

Records until Ctrl-C, or for --duration seconds, and prints the recording's path.
Clicks and shortcut keys are noted beside the picture, and zooms are made from them.
Plain typing is never noted.

  --display N      a display by number, counted from 0 (without a source: the main display)
  --area X,Y,W,H   a part of the screen; --area select to drag it out with the mouse
  --window APP     a window by its application's name, also while others cover it
  --title TEXT     the one of APP's windows whose title contains TEXT
  --pick           a display or window that you pick from live pictures of them
  --microphone     with the microphone, --no-microphone without (stored choice, else with)
  --camera         with the camera, --no-camera without (stored choice, else without)
  --system-audio   with what the speakers play, --no-system-audio without (stored
                   choice, else with)
  --countdown S    seconds before the recording starts (0 for none)
  --duration S     stop by itself after S seconds

Example: tessaloom record --window firefox --duration 20
)",
            [](const QStringList& words, const CommandServices& services) {
                return runRecordCommand(words, services.capture, services.devices, services.hangUpWindows);
            }},
    Command{"export", "make a video or a GIF from a recording",
            R"(Usage: tessaloom export RECORDING [-o FILE] [--format mp4|gif]
                        [--resolution 720p|1080p|1440p|4k] [--quality high|balanced|small]
                        [--shape native|16:9|1:1|4:5|9:16]
                        [--fps 10|15|24] [--loop|--no-loop]

Composes every frame from the recording and its edit, and prints the file's path.
RECORDING is a path, or a name from "tessaloom list". An existing FILE is replaced,
and only by a complete one.

  -o FILE          where to (the recording's name in the current folder)
  --format F       what to make (what FILE ends in, or else mp4)
  --shape S        the picture's shape (the edit's)
Only for MP4, which has 60 frames a second:
  --resolution R   the picture's shorter side (1080p); never larger than the recording
  --quality Q      how much detail to spend bits on (high)
Only for GIF, whose longer side is 720 pixels at most:
  --fps N          frames a second (15)
  --loop           repeat for ever, or not with --no-loop (as the edit says)

Example: tessaloom export "Recording 2026-11-15 at 14.05.09" -o demo.mp4
)",
            [](const QStringList& words, const CommandServices& services) {
                return runExportCommand(words, services.makeRenderer, services.hardwareEncodings);
            }},
    Command{"frame", "draw one frame of a recording",
            R"(Usage: tessaloom frame RECORDING --at SECONDS [--size WxH] -o FILE.png

Draws the frame that an export would show at a time of the recording.

  --at SECONDS     the time in the recording, before any cuts
  --size WxH       the picture's size in pixels (as an export at 1080p)
  -o FILE.png      where to

Example: tessaloom frame "Recording 2026-11-15 at 14.05.09" --at 5 -o still.png
)",
            [](const QStringList& words, const CommandServices& services) {
                return runFrameCommand(words, services.makeRenderer);
            }},
    Command{"list", "list the recordings, newest first",
            R"(Usage: tessaloom list [--json]

Lists the recordings of the library, newest first, with their lengths.

  --json           as an array of objects, for scripts
)",
            [](const QStringList& words, const CommandServices&) { return runListCommand(words); }},
    Command{"info", "describe one recording",
            R"(Usage: tessaloom info RECORDING [--json]

Describes one recording. RECORDING is a path, or a name from "tessaloom list".

  --json           as an object, for scripts
)",
            [](const QStringList& words, const CommandServices&) { return runInfoCommand(words); }},
    Command{"inspect", "show the facts behind a recording, as JSON",
            R"(Usage: tessaloom inspect log RECORDING
       tessaloom inspect edit RECORDING
       tessaloom inspect zooms RECORDING [--duration S] [--zoom-factor F]
       tessaloom inspect cuts RECORDING
       tessaloom inspect frame RECORDING --at S [--at S ...] --size WxH

Prints what the program works with as JSON, for scripts and for finding out why a
frame looks as it does. Needs no media files. Times are seconds of the recording,
before any cuts. Where a number of cuts or frame is too great to be told, it is null.

  log              pointer, clicks and keys as they were read, in the stored form
  edit             the edit as it was read, in the stored form
  zooms            the zoom blocks that the log gives rise to; stored ones don't count
  cuts             the trim, what is kept and for how long, and where the camera is off
  frame            what a frame shows and where; an object for each --at

  --duration S     take the recording to be S seconds long (its log's own end)
  --zoom-factor F  how much a zoom magnifies (2)
  --at S           the frame's time; --at=-0.5 for one before the start
  --size WxH       the picture's size in pixels

Example: tessaloom inspect frame "Recording 2026-11-15 at 14.05.09" --at 5 --size 1920x1080
)",
            [](const QStringList& words, const CommandServices&) { return runInspectCommand(words); }},
};

void printOverview(std::ostream& out) {
    out << "Tessaloom records the screen and makes a zoomed, framed video of it.\n\n"
           "Usage: tessaloom COMMAND [OPTIONS]\n\n";
    for (const Command& command : commands) {
        out << "  " << command.name << std::string(10 - std::string_view(command.name).size(), ' ')
            << command.summary << '\n';
    }
    out << "\n\"tessaloom COMMAND --help\" tells more. Start with: tessaloom record --duration 10\n"
           "TESSALOOM_LIBRARY names the recordings folder, TESSALOOM_CONFIG the settings file,\n"
           "TESSALOOM_RENDERER=gpu or cpu chooses what draws.\n";
}

/// The system's words for what lies behind an error, with a blank before; empty when it said nothing.
std::string systemReason(const std::exception& error) {
    try {
        std::rethrow_if_nested(error);
    } catch (const std::system_error& cause) {
        return " " + cause.code().message() + ".";
    } catch (const std::exception&) {
    }
    return "";
}

/// The error as a sentence, and what the user can do about it where its own words don't say so.
std::string explained(const std::exception& error) {
    const std::string text = error.what();
    const auto* failure = dynamic_cast<const Exporter::Failure*>(&error);
    const bool recordingIsDamaged = dynamic_cast<const UnreadableMovie*>(&error) != nullptr ||
                                    (failure != nullptr && failure->isTheRecordings());
    if (recordingIsDamaged) return text + " Restore it from a copy, or record again.";
    if (failure != nullptr || dynamic_cast<const MediaError*>(&error) != nullptr)
        return text + systemReason(error) + " Check the folder and the free space.";
    // The system's reason comes last in these, without a full stop.
    const bool fileIsRefused = dynamic_cast<const std::system_error*>(&error) != nullptr;
    return fileIsRefused ? text + ". Check the folder and the free space." : text;
}

ExitStatus run(const Command& command, const QStringList& words, const CommandServices& services) {
    if (words.contains("--help") || words.contains("-h")) {
        std::cout << command.help;
        return ExitStatus::done;
    }
    try {
        return command.run(words, services);
    } catch (const UsageError& error) {
        std::cerr << "tessaloom: " << error.what() << " See \"tessaloom " << command.name << " --help\".\n";
        return ExitStatus::usage;
    } catch (const std::exception& error) {
        std::cerr << "tessaloom: " << explained(error) << '\n';
        return ExitStatus::failed;
    }
}

}  // namespace

ExitStatus runCommandLine(const QStringList& arguments, const CommandServices& services) {
    const QString name = arguments.value(0);
    if (name == "--help" || name == "-h" || name == "help") {
        printOverview(std::cout);
        return ExitStatus::done;
    }
    if (name == "--version") {
        std::cout << "tessaloom " << TESSALOOM_VERSION << '\n';
        return ExitStatus::done;
    }
    const auto command = std::ranges::find(commands, name, [](const Command& c) { return QString(c.name); });
    if (command != commands.end()) return run(*command, arguments.mid(1), services);
    if (!name.isEmpty()) std::cerr << "tessaloom: There is no command \"" << name.toStdString() << "\".\n\n";
    printOverview(std::cerr);
    return ExitStatus::usage;
}

}  // namespace tessaloom
