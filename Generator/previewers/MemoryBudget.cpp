// SPDX-License-Identifier: GPL-3.0-or-later
#include "MemoryBudget.h"

#include <QFile>
#include <sys/resource.h>
#include <unistd.h>

namespace Preview {

namespace {

    // The process's mapped size (VmSize), from the first field of /proc/self/statm.
    std::uint64_t addressSpaceInUse()
    {
        QFile statm(QStringLiteral("/proc/self/statm"));
        if (!statm.open(QIODevice::ReadOnly))
            return 0;
        const QByteArray pages = statm.readLine().split(' ').value(0);
        return pages.toULongLong() * std::uint64_t(sysconf(_SC_PAGESIZE));
    }

}

std::uint64_t addressSpaceLimit()
{
    rlimit limit {};
    if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY)
        return 0;
    return limit.rlim_cur;
}

std::uint64_t addressSpaceLeft()
{
    const std::uint64_t limit = addressSpaceLimit();
    if (limit == 0)
        return std::uint64_t(sysconf(_SC_PHYS_PAGES)) * std::uint64_t(sysconf(_SC_PAGESIZE));
    const std::uint64_t used = addressSpaceInUse();
    return used < limit ? limit - used : 0;
}

}
