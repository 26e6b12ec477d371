// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLoggingCategory>

/// One category per area of the program, all under the prefix "com.tessaloom.app.".
namespace tessaloom::Log {

Q_DECLARE_LOGGING_CATEGORY(recording)
Q_DECLARE_LOGGING_CATEGORY(screenCapture)
Q_DECLARE_LOGGING_CATEGORY(sourcePicker)
Q_DECLARE_LOGGING_CATEGORY(eventTap)
Q_DECLARE_LOGGING_CATEGORY(mic)
Q_DECLARE_LOGGING_CATEGORY(webcam)
Q_DECLARE_LOGGING_CATEGORY(exporting)
Q_DECLARE_LOGGING_CATEGORY(renderer)

// The same areas as far as the user is told of an error as well, by a dialog or the command's own words.
Q_DECLARE_LOGGING_CATEGORY(recordingTold)
Q_DECLARE_LOGGING_CATEGORY(screenCaptureTold)

/// Milestones (info) and Qt's remarks on its surroundings are shown only when `verbose`; our warnings and
/// errors always are. Lines go to stderr, with their category when `verbose`, else like every other word to
/// the user. Call it before the application object is made, which remarks too.
void install(bool verbose);

/// From now on what the user is told in other words on the same terminal isn't logged too, unless verbose.
void leaveOutWhatIsTold();

}  // namespace tessaloom::Log
