// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Log.h"

#include <QString>

namespace tessaloom::Log {

Q_LOGGING_CATEGORY(recording, "com.tessaloom.app.Recording")
Q_LOGGING_CATEGORY(screenCapture, "com.tessaloom.app.ScreenCapture")
Q_LOGGING_CATEGORY(sourcePicker, "com.tessaloom.app.SourcePicker")
Q_LOGGING_CATEGORY(eventTap, "com.tessaloom.app.EventTap")
Q_LOGGING_CATEGORY(mic, "com.tessaloom.app.Mic")
Q_LOGGING_CATEGORY(webcam, "com.tessaloom.app.Webcam")
Q_LOGGING_CATEGORY(exporting, "com.tessaloom.app.Export")
Q_LOGGING_CATEGORY(renderer, "com.tessaloom.app.Renderer")

Q_LOGGING_CATEGORY(recordingTold, "com.tessaloom.app.Recording")
Q_LOGGING_CATEGORY(screenCaptureTold, "com.tessaloom.app.ScreenCapture")

void install(bool verbose) {
    qSetMessagePattern(verbose ? QStringLiteral("%{if-category}%{category}: %{endif}%{message}")
                               : QStringLiteral("tessaloom: %{message}"));
    QLoggingCategory::setFilterRules(verbose ? QStringLiteral("com.tessaloom.app.*.info=true")
                                             : QStringLiteral("com.tessaloom.app.*.info=false\n"
                                                              "default.warning=false\n"
                                                              "qt.*.warning=false"));
}

void leaveOutWhatIsTold() {
    const bool isVerbose = recording().isInfoEnabled();
    if (isVerbose) return;
    for (const auto* category : {&recordingTold(), &screenCaptureTold()})
        const_cast<QLoggingCategory*>(category)->setEnabled(QtCriticalMsg, false);
}

}  // namespace tessaloom::Log
