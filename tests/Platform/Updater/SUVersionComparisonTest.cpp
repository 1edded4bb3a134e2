// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUVersionComparison.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace {

// Missing parts are zero, leading zeros and the case of words do not count, nor what follows a
// dash.
TEST(VersionComparison, TheseAreTheSame)
{
    for (const auto& [a, b] :
        { std::pair { "1", "1.0.0" }, std::pair { "1.01", "1.1" }, std::pair { "2.0B1", "2.0b1" },
            std::pair { "2.1-linux-x86_64", "2.1" }, std::pair { "", "0" } }) {
        EXPECT_EQ(SUVersionComparison::compareVersions(a, b), 0) << a << " vs " << b;
        EXPECT_EQ(SUVersionComparison::compareVersions(b, a), 0) << b << " vs " << a;
    }
}

// Numbers compare as numbers, also beyond 64 bits; an unknown word ranks below alpha, beta and
// release candidates, and all of them below their release.
TEST(VersionComparison, OrdersAReleaseSeriesBothWays)
{
    const QStringList series { "", "0.9", "1.0dev1", "1.0a2", "1.0 beta 1", "1.0b2", "1.0b10",
        "1.0rc1-build7", "1.0", "1.0.1", "1.1b1", "1.1", "1.9", "1.10", "1.99999999999999999999",
        "1.100000000000000000000", "2.0-zzz", "2.1-aaa" };
    for (qsizetype i = 0; i < series.size(); ++i)
        for (qsizetype j = 0; j < series.size(); ++j)
            EXPECT_EQ(SUVersionComparison::compareVersions(series[i], series[j]),
                i < j ? -1 : (i > j ? 1 : 0))
                << series[i].toStdString() << " vs " << series[j].toStdString();
}

}
