// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUVersionComparison.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace {

struct VersionCase {
    const char* name;
    const char* older;
    const char* newer; // equal to older when same is true
    bool same = false;
};

const VersionCase versionCases[] = {
    { "MissingPartsAreZero", "1.0", "1.0.0", true },
    { "LeadingZerosAreIgnored", "1.01", "1.1", true },
    { "NumbersAsNumbers", "1.9", "1.10" },
    { "NumbersAsNumbersBeyondSixtyFourBits", "1.99999999999999999999", "1.100000000000000000000" },
    { "PreReleaseNumbersAsNumbers", "1.0b2", "1.0b10" },
    { "SpelledOutWords", "2.0 alpha 3", "2.0 beta 1" },
    { "WordsIgnoreCase", "2.0B1", "2.0b1", true },
    { "SuffixAfterDashIgnored", "2.1-linux-x86_64", "2.1", true },
    { "SuffixAfterDashIgnoredInOrder", "2.0-zzz", "2.1-aaa" },
    { "PreReleaseWithDashSuffix", "3.0b2-build7", "3.0" },
    { "EmptyIsOldest", "", "0.1" },
    { "EmptyEqualsZero", "", "0", true },
};

class VersionComparison : public testing::TestWithParam<VersionCase> { };

TEST_P(VersionComparison, OrdersBothWays)
{
    const VersionCase& c = GetParam();
    const QString a = QString::fromUtf8(c.older);
    const QString b = QString::fromUtf8(c.newer);
    EXPECT_EQ(SUVersionComparison::compareVersions(a, b), c.same ? 0 : -1);
    EXPECT_EQ(SUVersionComparison::compareVersions(b, a), c.same ? 0 : 1);
    EXPECT_EQ(SUVersionComparison::compareVersions(a, a), 0);
}

INSTANTIATE_TEST_SUITE_P(Table, VersionComparison, testing::ValuesIn(versionCases),
    [](const testing::TestParamInfo<VersionCase>& info) { return std::string(info.param.name); });

TEST(VersionComparisonChain, IsTransitiveOverAReleaseSeries)
{
    const QStringList series { "0.9", "1.0dev1", "1.0a1", "1.0a2", "1.0b1", "1.0b2", "1.0rc1",
        "1.0", "1.0.1", "1.1b1", "1.1", "1.10", "2.0" };
    for (qsizetype i = 0; i < series.size(); ++i)
        for (qsizetype j = 0; j < series.size(); ++j)
            EXPECT_EQ(SUVersionComparison::compareVersions(series[i], series[j]),
                i < j ? -1 : (i > j ? 1 : 0))
                << series[i].toStdString() << " vs " << series[j].toStdString();
}

}
