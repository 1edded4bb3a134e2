// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProcessLimits.h"

#include <sys/resource.h>

namespace Preview {

namespace {

    void lower(int resource, rlim_t value)
    {
        rlimit limit {};
        if (getrlimit(resource, &limit) != 0)
            return;
        if (limit.rlim_cur != RLIM_INFINITY && limit.rlim_cur <= value)
            return;
        limit.rlim_cur = value;
        if (limit.rlim_max != RLIM_INFINITY && limit.rlim_max < value)
            limit.rlim_cur = limit.rlim_max;
        setrlimit(resource, &limit);
    }

}

void limitOwnResources(std::uint64_t addressSpaceBytes, std::uint64_t cpuSeconds)
{
    lower(RLIMIT_AS, rlim_t(addressSpaceBytes));
    lower(RLIMIT_CPU, rlim_t(cpuSeconds));
}

}
