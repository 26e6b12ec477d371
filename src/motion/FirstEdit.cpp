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

void showCamera(EditParams& edit, const CameraChoice& camera) {
    edit.webcam.enabled = true;
    edit.webcam.shape = camera.shape;
    edit.webcam.relativeSize = camera.relativeSize;
    edit.webcam.mirrored = camera.mirrored;
}

std::size_t storeFirstEdit(const TakeBundle& bundle, const EventLog& log,
                           const std::optional<CameraChoice>& camera) {
    EditParams edit = editOrFresh(bundle);
    edit.zoomKeyframes = ZoomEngine{}.generate(log, logDuration(log));
    if (camera) showCamera(edit, *camera);
    bundle.write(edit);
    return edit.zoomKeyframes.size();
}

}  // namespace tessaloom
