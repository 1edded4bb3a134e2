// SPDX-License-Identifier: GPL-3.0-or-later
#include "QXUtilities.h"

#include "VariantKinds.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

// The second blank-separated piece of the description, or else a text made from the numbers.
TEST(VersionInfoFromDescription, TakesTheSecondPieceOrFallsBackToTheNumbers)
{
    const struct {
        QString description;
        QXVersion numbers;
        QString versionString;
    } cases[] = {
        { "Version 10.13.6 (Build 17G65)", { 10, 13, 6 }, "10.13.6" },
        { "Version 6.1.0-18-amd64 (Build #1)", { 6, 1, 0 }, "6.1.0-18-amd64" },
        { "Version10.13.6", { 10, 13, 6 }, "10.13." },
        { "Version10.13.0", { 10, 13, 0 }, "10.13.0." },
        { "", { 10, 9, 2 }, "10.9." },
        { QString(), { 10, 9, 0 }, "10.9.0." },
        { "Version  10.9", { 10, 9, 0 }, "" },
    };
    for (const auto& [description, numbers, versionString] : cases) {
        SCOPED_TRACE(description.toStdString());
        const QVariantMap info = QXOperatingSystemVersionInfoFrom(description, numbers);
        EXPECT_EQ(info.value("versionString").toString(), versionString);
        EXPECT_TRUE(VariantKinds::same(info.value("major"), qint64(numbers.major)));
        EXPECT_TRUE(VariantKinds::same(info.value("minor"), qint64(numbers.minor)));
        EXPECT_TRUE(VariantKinds::same(info.value("patch"), qint64(numbers.patch)));
        EXPECT_EQ(info.contains("fullVersionString"), !description.isNull());
        EXPECT_EQ(info.value("fullVersionString").toString(), description);
    }
}

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
TEST_F(RunningSystem, ComparesTheGivenVersionAgainstTheSystem)
{
    const struct {
        const char* system;
        QXVersion given;
        int compare;
    } cases[] = { { "10.9.0", { 10, 9, 0 }, 0 }, { "10.9.5", { 10, 9, 4 }, -1 },
        { "9.9.9", { 10, 0, 0 }, 1 }, { "10.10.0", { 10, 9, 0 }, -1 } };
    for (const auto& [system, given, compare] : cases) {
        SCOPED_TRACE(system);
        setSystem(system);
        const auto [major, minor, patch] = given;
        EXPECT_EQ(QXOperatingSystemCompareToVersion(major, minor, patch), compare);
        EXPECT_EQ(QXOperatingSystemIsGreaterThanVersion(major, minor, patch), compare > 0);
        EXPECT_EQ(
            QXOperatingSystemIsGreaterThanOrEqualToVersion(major, minor, patch), compare >= 0);
        EXPECT_EQ(QXOperatingSystemIsEqualToVersion(major, minor, patch), compare == 0);
        EXPECT_EQ(QXOperatingSystemIsLessThanOrEqualToVersion(major, minor, patch), compare <= 0);
        EXPECT_EQ(QXOperatingSystemIsLessThanVersion(major, minor, patch), compare < 0);
    }
}

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
