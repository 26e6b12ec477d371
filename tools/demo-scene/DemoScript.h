// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <vector>

namespace tessaloom::demo {

enum class StepKind { Move, Click, Type, Key, Wait };

/// One thing to do. What `argument` means: Move and Click take a control's name or "X,Y" in screen pixels,
/// Type the text, Key a combination as "Ctrl+S", Wait seconds.
struct Step {
    StepKind kind;
    QString argument;
};

/// A visit is filled in, saved and looked at: clicks in several corners with rests between, under 25 seconds.
std::vector<Step> demoScript();

}  // namespace tessaloom::demo
