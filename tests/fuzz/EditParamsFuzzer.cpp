// SPDX-License-Identifier: GPL-3.0-or-later
#include "FuzzCheck.h"
#include "core/DecodeError.h"
#include "core/EditParams.h"

// Whatever is read is written so that it reads back the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessaloom;
    try {
        const EditParams edit = decodeEditParams(fuzz::asText(data, size));
        fuzz::require(decodeEditParams(encode(edit)) == edit);
    } catch (const DecodeError&) {
    }
    return 0;
}
