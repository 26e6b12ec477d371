// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/BundleArgument.h"

#include <iostream>

#include "base/Defaults.h"
#include "media/MovieReader.h"
#include "shell/CommandError.h"
#include "take/RecordingLibrary.h"

namespace tessaloom {

TakeBundle findBundle(const QString& pathOrName) {
    const auto wanted = pathOrName.toStdString();
    const auto bundle = RecordingLibrary(Defaults::libraryFolder()).find(wanted);
    if (!bundle) {
        throw CommandError("No recording called \"" + wanted +
                           "\". Run \"tessaloom list\" to see what there is.");
    }
    if (!isBundle(bundle->url)) {
        throw CommandError("\"" + wanted + "\" is no recording: it holds none of a recording's files.");
    }
    return *bundle;
}

OpenTake openTake(const TakeBundle& bundle) {
    OpenTake take = OpenTake::open(bundle);
    for (const std::string& warning : take.warnings)
        std::cerr << "tessaloom: " << warning << '\n';
    return take;
}

double playableDuration(const OpenTake& take) {
    if (take.totalDuration > 0) return take.totalDuration;
    return MovieReader::scanDuration(take.bundle.file(TakeBundle::screenFile));
}

}  // namespace tessaloom
