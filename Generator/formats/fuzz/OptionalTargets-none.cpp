// SPDX-License-Identifier: GPL-3.0-or-later
// Chosen by CMake when the optional readers are not built.
#include "FuzzEntryPoints.h"

namespace FuzzEntryPoints {

std::vector<Target> optionalTargets() { return {}; }

}
