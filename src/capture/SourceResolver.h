// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "capture/CaptureSource.h"
#include "capture/CaptureTarget.h"
#include "capture/ShareableContent.h"

namespace tessaloom {

/// An application's own window that isn't ours, large enough to be more than a helper of its application.
bool isRecordable(const ShareableWindow& window);

/// Finds what was asked for among what is there. Throws CaptureError::noDisplay when no display fits (an area
/// off every screen, a number past the last one) and CaptureError::windowNotFound when no window matches.
///
/// An area goes to the display that holds most of it, and is cut to that display. A window is matched by an
/// application name that contains the text or a bundle identifier that equals it, both without case; of
/// several the largest is taken. What is to be picked by sight isn't found here: std::invalid_argument.
CaptureTarget resolveSource(const CaptureSource& source, const ShareableContent& content);

}  // namespace tessaloom
