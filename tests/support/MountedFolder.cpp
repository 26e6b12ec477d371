// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/MountedFolder.h"

#include <sys/mount.h>

#include <cerrno>
#include <system_error>

namespace tessaloom::test {

std::unique_ptr<MountedFolder> MountedFolder::over(const std::filesystem::path& folder,
                                                   const std::string& size) {
    if (mount("tmpfs", folder.c_str(), "tmpfs", 0, ("size=" + size).c_str()) != 0) return nullptr;
    return std::unique_ptr<MountedFolder>(new MountedFolder(folder));
}

MountedFolder::~MountedFolder() {
    umount2(folder_.c_str(), MNT_DETACH);
}

void MountedFolder::makeReadOnly() {
    if (mount(nullptr, folder_.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0)
        throw std::system_error(errno, std::generic_category(), folder_.string());
}

}  // namespace tessaloom::test
