// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace Preview {

// The process's address-space limit in bytes (the generator sets its own at start); 0 when
// there is none.
std::uint64_t addressSpaceLimit();

// How much more the process may map under that limit now; without a limit, the machine's memory.
std::uint64_t addressSpaceLeft();

}
