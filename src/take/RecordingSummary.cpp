// SPDX-License-Identifier: GPL-3.0-or-later
#include "take/RecordingSummary.h"

#include <QDateTime>
#include <QFileInfo>
#include <cmath>
#include <stdexcept>

#include "media/MovieReader.h"

namespace tessaloom {
namespace {

std::string creationDate(const std::filesystem::path& folder) {
    const QFileInfo info(QString::fromStdString(folder.string()));
    QDateTime created = info.birthTime();
    if (!created.isValid()) created = info.lastModified();
    if (!created.isValid()) created = QDateTime::currentDateTime();
    return created.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ssZ")).toStdString();
}

double movieDuration(const TakeBundle& bundle) {
    try {
        return std::round(MovieReader::scanDuration(bundle.file(TakeBundle::screenFile)) * 10.0) / 10.0;
    } catch (const std::runtime_error&) {
        return 0;
    }
}

bool storesCaptions(const TakeBundle& bundle) {
    try {
        return !bundle.readEdit().captions.empty();
    } catch (const std::runtime_error&) {
        return false;
    }
}

}  // namespace

RecordingSummary RecordingSummary::of(const TakeBundle& bundle) {
    const auto name = bundle.url.filename();
    return {.recordingId = name.extension() == TakeBundle::extension ? name.stem().string() : name.string(),
            .created = creationDate(bundle.url),
            .durationSeconds = movieDuration(bundle),
            .hasCamera = bundle.hasWebcam(),
            .hasMicrophone = bundle.hasMic(),
            .hasCaptions = storesCaptions(bundle),
            .path = bundle.url.string()};
}

}  // namespace tessaloom
