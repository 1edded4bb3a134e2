// SPDX-License-Identifier: GPL-3.0-or-later
// Versions and the running system's.
#include "QXUtilities.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

// Found by argument lookup, so they live beside QXVersion in the global namespace.
static void PrintTo(const QXVersion& v, std::ostream* os)
{
    *os << v.major << '.' << v.minor << '.' << v.patch;
}

static bool operator==(const QXVersion& a, const QXVersion& b)
{
    return a.major == b.major && a.minor == b.minor && a.patch == b.patch;
}

namespace {

// Every predicate must agree with the comparison, and the comparison must be antisymmetric.
TEST(Comparison, OrdersAndDrivesThePredicates)
{
    const struct {
        QXVersion a;
        QXVersion b;
        int expected;
    } cases[] = {
        { { 10, 9, 0 }, { 10, 9, 0 }, 0 }, { { 10, 10, 0 }, { 10, 9, 5 }, 1 }, // numbers, not text
        { { INT64_MIN, 0, 0 }, { INT64_MAX, 0, 0 }, -1 }, // no overflow
    };
    for (const auto& [a, b, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(a) + " against " + testing::PrintToString(b));
        EXPECT_EQ(QXVersionCompare(a, b), expected);
        EXPECT_EQ(QXVersionCompare(b, a), -expected);
        EXPECT_EQ(QXVersionIsGreaterThanVersion(a, b), expected > 0);
        EXPECT_EQ(QXVersionIsGreaterThanOrEqualToVersion(a, b), expected >= 0);
        EXPECT_EQ(QXVersionIsEqualToVersion(a, b), expected == 0);
        EXPECT_EQ(QXVersionIsLessThanOrEqualToVersion(a, b), expected <= 0);
        EXPECT_EQ(QXVersionIsLessThanVersion(a, b), expected < 0);
    }
}

// The leading digits of the first three components; a patch below one is left out of the text
// unless asked for.
TEST(Parsing, TakesLeadingDigitsOfTheFirstThreeComponents)
{
    const struct {
        QString text;
        QXVersion expected;
        const char* shortForm;
    } cases[] = {
        { "10.13.6.1", { 10, 13, 6 }, "10.13.6" },
        { "10.x.3", { 10, 0, 3 }, "10.0.3" },
        { QString(), { 0, 0, 0 }, "0.0" },
        { "6b2.1", { 6, 1, 0 }, "6.1" },
        { " 7.\t8.-1", { 7, 8, -1 }, "7.8" },
        { "99999999999999999999.-99999999999999999999", { INT64_MAX, INT64_MIN, 0 },
            "9223372036854775807.-9223372036854775808" },
    };
    for (const auto& [text, expected, shortForm] : cases) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_EQ(QXVersionFromString(text), expected);
        EXPECT_EQ(NSStringFromQXVersion(expected), shortForm);
    }
    EXPECT_EQ(NSStringFromQXVersionIncludingZeroPatch(true, { 10, 9, 0 }), "10.9.0");
}

// Each test runs in its own process under CTest, so this really is the first use. The shared
// information keeps the version of its first use; the functions read it afresh.
TEST(RunningSystem, SharedInfoIsMadeOnceEvenWhenFirstAskedFromTwoThreads)
{
    qputenv("TOLVANE_SYSTEM_VERSION", "10.13.6");
    std::atomic<int> waiting { 2 };
    const QXVersionInfo* seen[2] = { nullptr, nullptr };
    auto ask = [&](int index) {
        --waiting;
        while (waiting.load() > 0) { }
        seen[index] = &QXVersionInfo::sharedVersionInfo();
    };
    std::thread first(ask, 0);
    std::thread second(ask, 1);
    first.join();
    second.join();
    ASSERT_NE(seen[0], nullptr);
    EXPECT_EQ(seen[0], seen[1]);

    qputenv("TOLVANE_SYSTEM_VERSION", "10.9");
    EXPECT_EQ(seen[0]->currentOperatingSystemVersion(), QXVersionMake(10, 13, 6));
    EXPECT_EQ(QXVersionCurrentOperatingSystem(), QXVersionMake(10, 9, 0));
    EXPECT_EQ(QXOperatingSystemVersion(), "10.9");
    // The sense is reversed against the QXVersion predicates: the GIVEN version is compared with
    // the system, so "greater than or equal to 10.9.0" holds on 10.9.0 and older.
    EXPECT_EQ(QXOperatingSystemCompareToVersion(10, 8, 9), -1);
    EXPECT_TRUE(QXOperatingSystemIsGreaterThanOrEqualToVersion(10, 10, 0));
    EXPECT_TRUE(QXOperatingSystemIsOrBetweenVersions(10, 14, 0, 10, 6, 0));
    EXPECT_FALSE(QXOperatingSystemIsOrBetweenVersions(10, 6, 0, 10, 14, 0));
    qunsetenv("TOLVANE_SYSTEM_VERSION");
}

}
