// SPDX-License-Identifier: GPL-3.0-or-later
#include "QXUtilities.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

struct DescriptionCase {
    const char* name;
    QString description;
    QXVersion numbers;
    QString versionString;
};

class VersionInfoFromDescription : public testing::TestWithParam<DescriptionCase> { };

TEST_P(VersionInfoFromDescription, TakesTheSecondPieceOrFallsBackToTheNumbers)
{
    const auto& [name, description, numbers, versionString] = GetParam();
    const QVariantMap info = QXOperatingSystemVersionInfoFrom(description, numbers);
    EXPECT_EQ(info.value("versionString").toString(), versionString);
    EXPECT_EQ(info.value("major"), QVariant::fromValue<qint64>(numbers.major));
    EXPECT_EQ(info.value("minor"), QVariant::fromValue<qint64>(numbers.minor));
    EXPECT_EQ(info.value("patch"), QVariant::fromValue<qint64>(numbers.patch));
    EXPECT_EQ(info.value("major").typeId(), QMetaType::LongLong);
    EXPECT_EQ(info.contains("fullVersionString"), !description.isNull());
    EXPECT_EQ(info.value("fullVersionString").toString(), description);
}

INSTANTIATE_TEST_SUITE_P(Descriptions, VersionInfoFromDescription,
    testing::Values(
        DescriptionCase { "Described", "Version 10.13.6 (Build 17G65)", { 10, 13, 6 }, "10.13.6" },
        DescriptionCase { "DescriptionWinsOverNumbers", "Version 6.1.0-18-amd64 (Build #1)",
            { 6, 1, 0 }, "6.1.0-18-amd64" },
        DescriptionCase { "NoBlankWithPatch", "Version10.13.6", { 10, 13, 6 }, "10.13." },
        DescriptionCase { "NoBlankZeroPatch", "Version10.13.0", { 10, 13, 0 }, "10.13.0." },
        DescriptionCase { "EmptyDescription", "", { 10, 9, 2 }, "10.9." },
        DescriptionCase { "NoDescription", QString(), { 10, 9, 0 }, "10.9.0." },
        DescriptionCase { "DoubleBlankGivesEmptyPiece", "Version  10.9", { 10, 9, 0 }, "" }),
    [](const auto& info) { return std::string(info.param.name); });

class RunningSystem : public testing::Test {
protected:
    void TearDown() override { qunsetenv("TOLVANE_SYSTEM_VERSION"); }
    static void setSystem(const char* version) { qputenv("TOLVANE_SYSTEM_VERSION", version); }
};

TEST_F(RunningSystem, DictionaryAndAccessorsDescribeIt)
{
    setSystem("10.13.6");
    const QVariantMap info = QXOperatingSystemVersionInfo();
    EXPECT_EQ(info.value("versionString").toString(), "10.13.6");
    EXPECT_TRUE(info.value("fullVersionString").toString().startsWith("Version 10.13.6 (Build "));
    EXPECT_EQ(QXOperatingSystemVersion(), "10.13.6");
    EXPECT_EQ(QXOperatingSystemFullVersion(), info.value("fullVersionString").toString());
    EXPECT_EQ(QXOperatingSystemMajorVersion(), 10);
    EXPECT_EQ(QXOperatingSystemMinorVersion(), 13);
    EXPECT_EQ(QXOperatingSystemPatchVersion(), 6);

    // Nothing is cached: a changed system shows at once.
    setSystem("10.9");
    EXPECT_EQ(QXOperatingSystemVersion(), "10.9");
    EXPECT_EQ(QXOperatingSystemMinorVersion(), 9);
    EXPECT_EQ(QXOperatingSystemPatchVersion(), 0);
}

// The sense is reversed against the QXVersion predicates: the GIVEN version is compared with
// the system, so "greater than or equal to 10.9.0" holds on 10.9.0 and older.
struct ComparisonCase {
    const char* name;
    const char* system;
    QXVersion given;
    int compare;
};

class ReversedComparison : public RunningSystem,
                           public testing::WithParamInterface<ComparisonCase> { };

TEST_P(ReversedComparison, ComparesTheGivenVersionAgainstTheSystem)
{
    const auto& [name, system, given, compare] = GetParam();
    setSystem(system);
    EXPECT_EQ(QXOperatingSystemCompareToVersion(given.major, given.minor, given.patch), compare);
    EXPECT_EQ(
        QXOperatingSystemIsGreaterThanVersion(given.major, given.minor, given.patch), compare > 0);
    EXPECT_EQ(QXOperatingSystemIsGreaterThanOrEqualToVersion(given.major, given.minor, given.patch),
        compare >= 0);
    EXPECT_EQ(
        QXOperatingSystemIsEqualToVersion(given.major, given.minor, given.patch), compare == 0);
    EXPECT_EQ(QXOperatingSystemIsLessThanOrEqualToVersion(given.major, given.minor, given.patch),
        compare <= 0);
    EXPECT_EQ(
        QXOperatingSystemIsLessThanVersion(given.major, given.minor, given.patch), compare < 0);
}

INSTANTIATE_TEST_SUITE_P(Systems, ReversedComparison,
    testing::Values(ComparisonCase { "SameVersion", "10.9.0", { 10, 9, 0 }, 0 },
        ComparisonCase { "NewerSystemByPatch", "10.9.5", { 10, 9, 4 }, -1 },
        ComparisonCase { "OlderSystemByMajor", "9.9.9", { 10, 0, 0 }, 1 },
        ComparisonCase { "NumbersNotText", "10.10.0", { 10, 9, 0 }, -1 }),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(RunningSystem, BetweenTakesTheUpperBoundFirst)
{
    setSystem("10.13.6");
    EXPECT_TRUE(QXOperatingSystemIsOrBetweenVersions(10, 14, 0, 10, 6, 0));
    EXPECT_FALSE(QXOperatingSystemIsOrBetweenVersions(10, 6, 0, 10, 14, 0));
    EXPECT_TRUE(QXOperatingSystemIsOrBetweenVersions(10, 13, 6, 10, 13, 6));
    EXPECT_FALSE(QXOperatingSystemIsOrBetweenVersions(10, 13, 5, 10, 6, 0));
    EXPECT_FALSE(QXOperatingSystemIsOrBetweenVersions(10, 14, 0, 10, 13, 7));
}

TEST(QXApplicationVersion, IsTheBundleShortVersionAsItStands)
{
    EXPECT_EQ(QXApplicationVersion(), "4.5.6");
}

TEST(ByteOrder, MatchesTheMemoryLayout)
{
    const std::uint32_t one = 1;
    unsigned char first = 0;
    std::memcpy(&first, &one, 1);
    const std::int32_t expected = first == 1 ? OSLittleEndian : OSBigEndian;
    EXPECT_EQ(OSHostByteOrder(), expected);
    EXPECT_EQ(static_cast<std::int32_t>(CFByteOrderGetCurrent()), expected);
}

}
