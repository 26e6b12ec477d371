// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/TakeBundle.h"
#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::test {

/// What one run of the program came to.
struct CommandResult {
    int status = -1;  ///< 128 + N when signal N ended it; -1 when it didn't end in time
    std::string output;
    std::string errors;
};

/// Runs the real program with a library, settings and an output folder of its own, and no display.
class CommandTest : public ::testing::Test {
  protected:
    CommandTest();

    CommandResult run(const std::vector<std::string>& arguments) const;
    static CommandResult finished(ChildProcess& process);
    static std::vector<std::string> command(const std::vector<std::string>& arguments);

    /// A sound recording in the library: a second of plain pictures, an empty log and a fresh edit.
    TakeBundle makeRecording(const std::string& name) const;

    std::filesystem::path library() const { return folder_.path() / "library"; }
    std::filesystem::path outputs() const { return folder_.path() / "outputs"; }
    /// What lies in the output folder, hidden things too, in order.
    std::vector<std::string> outputNames() const;

    TemporaryFolder folder_;
    Environment environment_ = currentEnvironment();
};

std::vector<std::string> namesIn(const std::filesystem::path& folder);
std::string contentOf(const std::filesystem::path& file);
void writeFile(const std::filesystem::path& file, std::string_view content);

/// One plain sentence or two on one line of stderr, and nothing else anywhere.
void expectRefused(const CommandResult& result, int status, const std::string& part);

}  // namespace tessaloom::test
