// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/DemoScript.h"

namespace tessaloom::demo {

std::vector<Step> demoScript() {
    using enum StepKind;
    return {
        {Wait, "0.6"},
        {Click, "row.2"},
        {Wait, "1.3"},
        // The form, in the upper right.
        {Click, "field.title"},
        {Key, "Ctrl+A"},
        {Type, "Otters at Weir 4"},
        {Click, "field.hours"},
        {Key, "Ctrl+A"},
        {Type, "6.5"},
        {Click, "dropdown.status"},
        {Wait, "0.25"},
        {Click, "option.2"},
        {Wait, "0.2"},
        {Click, "toggle.share"},
        {Wait, "0.3"},
        {Key, "Ctrl+S"},
        {Wait, "2.3"},
        // The list's tabs, in the middle, then the search, at the top.
        {Click, "tab.2"},
        {Wait, "2.1"},
        {Key, "Ctrl+K"},
        {Wait, "0.4"},
        {Type, "sofia"},
        {Wait, "0.4"},
        {Key, "Return"},
        {Wait, "0.6"},
        {Move, "chart.bar.4"},
        {Wait, "1.6"},
    };
}

}  // namespace tessaloom::demo
