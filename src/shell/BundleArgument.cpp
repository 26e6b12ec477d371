// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/BundleArgument.h"

#include <iostream>

#include "base/Defaults.h"
#include "media/MovieReader.h"
#include "shell/CommandError.h"
#include "take/RecordingLibrary.h"

namespace tessaloom {
namespace {

void print(const Warnings& warnings) {
    for (const std::string& warning : warnings)
        std::cerr << "tessaloom: " << warning << '\n';
}

template <typename Record>
Record readComplete(const TakeBundle& bundle, Record (*read)(const TakeBundle&, Warnings&)) {
    Warnings warnings;
    finishIfInterrupted(bundle, warnings);
    Record record = read(bundle, warnings);
    print(warnings);
    return record;
}

}  // namespace

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
    print(take.warnings);
    return take;
}

EventLog openLog(const TakeBundle& bundle) {
    return readComplete(bundle, readLogOrEmpty);
}

EditParams openEdit(const TakeBundle& bundle) {
    return readComplete(bundle, readEditOrFresh);
}

double playableDuration(const OpenTake& take) {
    if (take.totalDuration > 0) return take.totalDuration;
    return MovieReader::scanDuration(take.bundle.file(TakeBundle::screenFile));
}

}  // namespace tessaloom
