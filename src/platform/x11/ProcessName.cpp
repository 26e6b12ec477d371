// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/ProcessName.h"

#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <vector>

namespace tessaloom {
namespace {

/// The kernel keeps no more of a name.
constexpr std::size_t longestKernelName = 15;

std::string executableName(const std::filesystem::path& folder) {
    std::error_code unreadable;  // as another user's
    std::string name = std::filesystem::read_symlink(folder / "exe", unreadable).filename().string();
    constexpr std::string_view replaced = " (deleted)";
    if (name.ends_with(replaced)) name.resize(name.size() - replaced.size());
    return name;
}

/// Of a script this is its interpreter, followed by the script itself.
std::vector<std::string> commandLineNames(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    std::ifstream file(folder / "cmdline");
    for (std::string word; std::getline(file, word, '\0');)
        names.push_back(std::filesystem::path(word).filename().string());
    return names;
}

}  // namespace

/// The kernel's name is the right one for scripts and links too, where the executable's is an interpreter's
/// or that of something else. Only where it may have been cut the others are looked at, for one that goes on.
std::string processName(std::uint32_t process) {
    const auto folder = std::filesystem::path("/proc") / std::to_string(process);
    std::ifstream file(folder / "comm");
    std::string name;
    std::getline(file, name);
    if (name.size() < longestKernelName) return name;
    if (const std::string whole = executableName(folder); whole.starts_with(name)) return whole;
    for (const std::string& whole : commandLineNames(folder)) {
        if (whole.starts_with(name)) return whole;
    }
    return name;
}

}  // namespace tessaloom
