// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/JsonLines.h"

#include <QJsonDocument>
#include <stdexcept>

namespace tessaloom::demo {

JsonLines::JsonLines(const QString& path) : file_(path) {
    if (!path.isEmpty() && !file_.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        throw std::runtime_error("The log " + path.toStdString() + " can't be written");
    }
}

void JsonLines::write(const QJsonObject& object) {
    if (file_.isOpen()) file_.write(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
}

}  // namespace tessaloom::demo
