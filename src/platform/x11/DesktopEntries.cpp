// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/DesktopEntries.h"

#include <QStandardPaths>
#include <algorithm>
#include <fstream>
#include <optional>
#include <set>
#include <system_error>

namespace tessaloom {
namespace {

/// The value when `line` sets `key`, else nothing.
std::optional<std::string> valueOf(const std::string& line, const std::string& key) {
    if (!line.starts_with(key)) return std::nullopt;
    const std::size_t equals = line.find_first_not_of(' ', key.size());
    if (equals == std::string::npos || line[equals] != '=') return std::nullopt;
    const std::size_t begin = line.find_first_not_of(' ', equals + 1);
    return begin == std::string::npos ? std::string() : line.substr(begin);
}

/// Only the main group counts: the others are actions of the application.
DesktopEntry readEntry(const std::filesystem::path& file, std::string id) {
    DesktopEntry entry{.id = std::move(id), .name = {}, .windowClass = {}};
    std::ifstream stream(file);
    bool inMainGroup = false;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with('[')) inMainGroup = line.starts_with("[Desktop Entry]");
        if (!inMainGroup) continue;
        if (const auto name = valueOf(line, "Name")) entry.name = *name;
        if (const auto windowClass = valueOf(line, "StartupWMClass")) entry.windowClass = *windowClass;
    }
    return entry;
}

std::string idOf(const std::filesystem::path& file, const std::filesystem::path& folder) {
    std::string id = file.lexically_relative(folder).replace_extension().string();
    std::ranges::replace(id, '/', '-');
    return id;
}

bool equalsWithoutCase(const std::string& a, const std::string& b) {
    return QString::fromStdString(a).compare(QString::fromStdString(b), Qt::CaseInsensitive) == 0;
}

/// Of "org.gnome.Nautilus" it is "Nautilus".
std::string lastPart(const std::string& id) {
    return id.substr(id.rfind('.') + 1);
}

}  // namespace

std::vector<DesktopEntry> readDesktopEntries(const std::vector<std::filesystem::path>& folders) {
    std::vector<DesktopEntry> entries;
    std::set<std::string> known;
    for (const auto& folder : folders) {
        std::error_code unreadable;
        for (std::filesystem::recursive_directory_iterator file(folder, unreadable), end; file != end;
             file.increment(unreadable)) {
            if (file->path().extension() != ".desktop") continue;
            auto entry = readEntry(file->path(), idOf(file->path(), folder));
            if (!entry.name.empty() && known.insert(entry.id).second) entries.push_back(std::move(entry));
        }
    }
    return entries;
}

std::vector<std::filesystem::path> desktopEntryFolders() {
    std::vector<std::filesystem::path> folders;
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation))
        folders.emplace_back(folder.toStdString());
    return folders;
}

const DesktopEntry* entryOfWindowClass(const std::vector<DesktopEntry>& entries,
                                       const std::string& windowClass) {
    if (windowClass.empty()) return nullptr;
    const auto find = [&](auto textOf) {
        const auto found = std::ranges::find_if(entries, [&](const DesktopEntry& entry) {
            return equalsWithoutCase(textOf(entry), windowClass);
        });
        return found == entries.end() ? nullptr : &*found;
    };
    if (const auto* entry = find([](const auto& each) { return each.windowClass; })) return entry;
    if (const auto* entry = find([](const auto& each) { return each.id; })) return entry;
    return find([](const auto& each) { return lastPart(each.id); });
}

}  // namespace tessaloom
