// SPDX-License-Identifier: GPL-3.0-or-later
// Prints a recording's encoder settings as arguments of FFmpeg's command line. Arguments: width, height.
#include <cstdio>
#include <cstdlib>

#include "media/H264Settings.h"

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3) return 2;
    const auto settings = tessaloom::H264Settings::capture(std::atoi(arguments[1]), std::atoi(arguments[2]));
    std::puts(settings.commandLine().c_str());
    return 0;
}
