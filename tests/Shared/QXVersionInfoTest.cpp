// SPDX-License-Identifier: GPL-3.0-or-later
#include "QXVersionInfo.h"

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
        { { 11, 0, 0 }, { 10, 15, 7 }, 1 }, { { 10, 9, 4 }, { 10, 9, 5 }, -1 },
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

TEST(TextForm, LeavesOutAPatchBelowOneUnlessAsked)
{
    const struct {
        QXVersion version;
        const char* shortForm;
        const char* fullForm;
    } cases[] = { { { 10, 9, 0 }, "10.9", "10.9.0" }, { { 10, 9, 2 }, "10.9.2", "10.9.2" },
        { { 10, 9, -1 }, "10.9", "10.9.-1" } };
    for (const auto& [version, shortForm, fullForm] : cases) {
        EXPECT_EQ(NSStringFromQXVersion(version), shortForm);
        EXPECT_EQ(NSStringFromQXVersionIncludingZeroPatch(false, version), shortForm);
        EXPECT_EQ(NSStringFromQXVersionIncludingZeroPatch(true, version), fullForm);
    }
}

TEST(Parsing, TakesLeadingDigitsOfTheFirstThreeComponents)
{
    const struct {
        QString text;
        QXVersion expected;
    } cases[] = {
        { "10.13.6.1", { 10, 13, 6 } },
        { "10.x.3", { 10, 0, 3 } },
        { QString(), { 0, 0, 0 } },
        { "10", { 10, 0, 0 } },
        { "6b2.1", { 6, 1, 0 } },
        { " 7.\t8", { 7, 8, 0 } },
        { "-3.+4.-0", { -3, 4, 0 } },
        { "- 3", { 0, 0, 0 } },
        { "99999999999999999999.-99999999999999999999", { INT64_MAX, INT64_MIN, 0 } },
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(QXVersionFromString(text), expected) << text.toStdString();
}

class SystemVersion : public testing::Test {
protected:
    void TearDown() override { qunsetenv("TOLVANE_SYSTEM_VERSION"); }
};

TEST_F(SystemVersion, IsReadAfreshEachTime)
{
    qputenv("TOLVANE_SYSTEM_VERSION", "10.13.6");
    EXPECT_EQ(QXVersionCurrentOperatingSystem(), QXVersionMake(10, 13, 6));
    qputenv("TOLVANE_SYSTEM_VERSION", "10.9");
    EXPECT_EQ(QXVersionCurrentOperatingSystem(), QXVersionMake(10, 9, 0));
}

TEST(QXVersionCurrentApplication, IsZero)
{
    EXPECT_EQ(QXVersionCurrentApplication(), QXVersionMake(0, 0, 0));
}

// Each test runs in its own process under CTest, so this really is the first use.
TEST_F(SystemVersion, SharedInfoIsMadeOnceEvenWhenFirstAskedFromTwoThreads)
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
    EXPECT_EQ(seen[0], &QXVersionInfo::sharedVersionInfo());

    // The version read at first use stays, whatever the system says later.
    const QXVersion atFirstUse = seen[0]->currentOperatingSystemVersion();
    qputenv("TOLVANE_SYSTEM_VERSION", "11.2.3");
    EXPECT_EQ(QXVersionInfo::sharedVersionInfo().currentOperatingSystemVersion(), atFirstUse);
    EXPECT_NE(QXVersionCurrentOperatingSystem(), atFirstUse);
}

}
