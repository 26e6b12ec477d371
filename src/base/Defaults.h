// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tessaloom {

/// The user's stored preferences (an INI file) and the folders the desktop assigns us. Main thread only.
/// TESSALOOM_CONFIG names another settings file, TESSALOOM_LIBRARY another recordings folder.
class Defaults {
  public:
    static Defaults standard();

    explicit Defaults(const std::filesystem::path& settingsFile);

    /// The stored value, or nothing when the key is absent or holds something else.
    std::optional<bool> boolean(const std::string& key) const;
    std::optional<int> integer(const std::string& key) const;
    std::optional<double> number(const std::string& key) const;
    std::optional<std::string> text(const std::string& key) const;

    void setBoolean(const std::string& key, bool value);
    void remove(const std::string& key);
    void setText(const std::string& key, const std::string& value);

    /// "Tessaloom" in the desktop's videos folder, in the temporary directory when there is none. Not
    /// created.
    static std::filesystem::path libraryFolder();

    /// Where the program remembers what is neither a setting nor the user's work. Not created.
    static std::filesystem::path stateFolder();

  private:
    std::filesystem::path settingsFile_;
};

}  // namespace tessaloom
