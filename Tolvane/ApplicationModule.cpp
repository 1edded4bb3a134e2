// SPDX-License-Identifier: GPL-3.0-or-later
// The entry point of tolvane_application.so, which the launcher (main.cpp) loads when no running
// instance took the launch.
#include "TLApplication.h"

extern "C" Q_DECL_EXPORT int TolvaneApplicationMain(int argc, char** argv)
{
    return NSApplicationMain(argc, argv);
}
