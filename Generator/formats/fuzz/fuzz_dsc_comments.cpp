// SPDX-License-Identifier: GPL-3.0-or-later
#include "FuzzEntryPoints.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (!FuzzEntryPoints::dscComments(data, size))
        std::abort();
    return 0;
}
