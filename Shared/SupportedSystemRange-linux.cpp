// SPDX-License-Identifier: GPL-3.0-or-later
#include "SupportedSystemRange.h"

// Linux kernel releases: 3.10 is the oldest that the Qt 6 libraries run on; there is no upper
// bound.
SupportedSystemRange supportedSystemRange() { return { QXVersionMake(3, 10, 0), std::nullopt }; }
