// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Defaults.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>

namespace tessaloom {
namespace {

QVariant storedValue(const std::filesystem::path& file, const std::string& key) {
    const QSettings settings(QString::fromStdString(file.string()), QSettings::IniFormat);
    return settings.value(QString::fromStdString(key));
}

void store(const std::filesystem::path& file, const std::string& key, const QVariant& value) {
    QSettings settings(QString::fromStdString(file.string()), QSettings::IniFormat);
    settings.setValue(QString::fromStdString(key), value);
}

/// A variable that is set to the empty text counts as not set.
std::optional<std::filesystem::path> pathFromEnvironment(const char* variable) {
    const QString value = qEnvironmentVariable(variable);
    if (value.isEmpty()) return std::nullopt;
    return std::filesystem::path(value.toStdString());
}

template <typename Value, typename Convert>
std::optional<Value> converted(const QVariant& stored, Convert convert) {
    if (!stored.isValid()) return std::nullopt;
    bool ok = false;
    const Value value = convert(stored, &ok);
    return ok ? std::optional<Value>(value) : std::nullopt;
}

}  // namespace

Defaults Defaults::standard() {
    if (const auto file = pathFromEnvironment("TESSALOOM_CONFIG")) return Defaults(*file);
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return Defaults(std::filesystem::path(folder.toStdString()) / "tessaloom" / "tessaloom.ini");
}

Defaults::Defaults(const std::filesystem::path& settingsFile) : settingsFile_(settingsFile) {}

/// Whoever edits the file by hand may write it in several ways; what is none of them says nothing.
std::optional<bool> Defaults::boolean(const std::string& key) const {
    const QString stored = storedValue(settingsFile_, key).toString().trimmed().toLower();
    if (QStringList{"true", "yes", "on", "1"}.contains(stored)) return true;
    if (QStringList{"false", "no", "off", "0"}.contains(stored)) return false;
    return std::nullopt;
}

std::optional<int> Defaults::integer(const std::string& key) const {
    return converted<int>(storedValue(settingsFile_, key),
                          [](const QVariant& v, bool* ok) { return v.toInt(ok); });
}

std::optional<double> Defaults::number(const std::string& key) const {
    return converted<double>(storedValue(settingsFile_, key),
                             [](const QVariant& v, bool* ok) { return v.toDouble(ok); });
}

std::optional<std::string> Defaults::text(const std::string& key) const {
    const QVariant stored = storedValue(settingsFile_, key);
    if (!stored.isValid()) return std::nullopt;
    return stored.toString().toStdString();
}

void Defaults::setBoolean(const std::string& key, bool value) {
    store(settingsFile_, key, value);
}

void Defaults::remove(const std::string& key) {
    QSettings settings(QString::fromStdString(settingsFile_.string()), QSettings::IniFormat);
    settings.remove(QString::fromStdString(key));
}

void Defaults::setText(const std::string& key, const std::string& value) {
    store(settingsFile_, key, QString::fromStdString(value));
}

std::filesystem::path Defaults::libraryFolder() {
    if (const auto folder = pathFromEnvironment("TESSALOOM_LIBRARY")) return *folder;
    const QString videos = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    const auto parent = videos.isEmpty() ? std::filesystem::temp_directory_path()
                                         : std::filesystem::path(videos.toStdString());
    return parent / "Tessaloom";
}

std::filesystem::path Defaults::stateFolder() {
    // Not known to QStandardPaths yet. A relative path counts as not set, as the desktops have agreed.
    const auto folder = pathFromEnvironment("XDG_STATE_HOME");
    const auto parent = folder && folder->is_absolute()
                            ? *folder
                            : std::filesystem::path(QDir::homePath().toStdString()) / ".local" / "state";
    return parent / "tessaloom";
}

}  // namespace tessaloom
