// SPDX-License-Identifier: GPL-3.0-or-later
// One libFuzzer program per reader: FUZZ_TARGET names its entry point.
#include "FuzzEntryPoints.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const FuzzEntryPoints::EntryPoint run = FuzzEntryPoints::entryPoint(FUZZ_TARGET);
    if (!run || !run(data, size))
        std::abort();
    return 0;
}
