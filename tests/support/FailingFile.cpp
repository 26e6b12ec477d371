// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FailingFile.h"

#include <fcntl.h>
#include <sys/mman.h>

#include <cstdint>
#include <stdexcept>

#include "core/FileDescriptor.h"

namespace tessaloom::test {

namespace fs = std::filesystem;

FailingFile::FailingFile(const fs::path& file, std::uintmax_t readable) : size_(fs::file_size(file)) {
    const auto opened = FileDescriptor::open(file, O_RDONLY);
    memory_ = mmap(nullptr, size_, PROT_READ, MAP_SHARED, opened.number(), 0);
    if (memory_ == MAP_FAILED) throw std::runtime_error("can't be mapped: " + file.string());
    // Of this process's memory, which is a file too, what isn't backed any more can't be read.
    fs::resize_file(file, readable);
    const auto start = reinterpret_cast<std::uintptr_t>(memory_);
    name_ = "subfile,,start," + std::to_string(start) + ",end," + std::to_string(start + size_) +
            ",,:/proc/self/mem";
}

FailingFile::~FailingFile() {
    munmap(memory_, size_);
}

}  // namespace tessaloom::test
