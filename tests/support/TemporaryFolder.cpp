// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TemporaryFolder.h"

#include <stdlib.h>

#include <string>
#include <system_error>

namespace tessaloom::test {

TemporaryFolder::TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "tessaloom-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category(), name);
    path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace tessaloom::test
