// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace Preview {

// Lowers the process's own limits on address space and CPU time, so that a hostile file
// cannot take the machine down; limits the caller set lower stay as they are. Programs the
// generator starts (Ghostscript) inherit them.
void limitOwnResources(std::uint64_t addressSpaceBytes, std::uint64_t cpuSeconds);

}
