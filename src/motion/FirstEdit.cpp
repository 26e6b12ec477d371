// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/FirstEdit.h"

#include <exception>

#include "motion/ZoomEngine.h"

namespace tessaloom {
namespace {

EditParams editOrFresh(const TakeBundle& bundle) {
    try {
        return bundle.readEdit();
    } catch (const std::exception&) {
        return {};
    }
}

}  // namespace

std::size_t storeGeneratedZooms(const TakeBundle& bundle, const EventLog& log) {
    EditParams edit = editOrFresh(bundle);
    edit.zoomKeyframes = ZoomEngine{}.generate(log, logDuration(log));
    bundle.write(edit);
    return edit.zoomKeyframes.size();
}

}  // namespace tessaloom
