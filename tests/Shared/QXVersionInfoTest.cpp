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

struct CompareCase {
    const char* name;
    QXVersion a;
    QXVersion b;
    int expected;
};

class Comparison : public testing::TestWithParam<CompareCase> { };

// Every predicate must agree with the comparison, and the comparison must be antisymmetric.
TEST_P(Comparison, OrdersAndDrivesThePredicates)
{
    const auto& [name, a, b, expected] = GetParam();
    EXPECT_EQ(QXVersionCompare(a, b), expected);
    EXPECT_EQ(QXVersionCompare(b, a), -expected);
    EXPECT_EQ(QXVersionIsGreaterThanVersion(a, b), expected > 0);
    EXPECT_EQ(QXVersionIsGreaterThanOrEqualToVersion(a, b), expected >= 0);
    EXPECT_EQ(QXVersionIsEqualToVersion(a, b), expected == 0);
    EXPECT_EQ(QXVersionIsLessThanOrEqualToVersion(a, b), expected <= 0);
    EXPECT_EQ(QXVersionIsLessThanVersion(a, b), expected < 0);
}

INSTANTIATE_TEST_SUITE_P(Versions, Comparison,
    testing::Values(CompareCase { "Equal", { 10, 9, 0 }, { 10, 9, 0 }, 0 },
        CompareCase { "MinorAsNumberNotText", { 10, 10, 0 }, { 10, 9, 5 }, 1 },
        CompareCase { "MajorDecides", { 11, 0, 0 }, { 10, 15, 7 }, 1 },
        CompareCase { "PatchDecides", { 10, 9, 4 }, { 10, 9, 5 }, -1 },
        CompareCase { "ExtremeValues", { INT64_MIN, 0, 0 }, { INT64_MAX, 0, 0 }, -1 }),
    [](const auto& info) { return std::string(info.param.name); });

struct TextCase {
    const char* name;
    QXVersion version;
    const char* shortForm;
    const char* fullForm;
};

class TextForm : public testing::TestWithParam<TextCase> { };

TEST_P(TextForm, LeavesOutAPatchBelowOneUnlessAsked)
{
    EXPECT_EQ(NSStringFromQXVersion(GetParam().version), GetParam().shortForm);
    EXPECT_EQ(
        NSStringFromQXVersionIncludingZeroPatch(false, GetParam().version), GetParam().shortForm);
    EXPECT_EQ(
        NSStringFromQXVersionIncludingZeroPatch(true, GetParam().version), GetParam().fullForm);
}

INSTANTIATE_TEST_SUITE_P(Versions, TextForm,
    testing::Values(TextCase { "ZeroPatch", { 10, 9, 0 }, "10.9", "10.9.0" },
        TextCase { "Patch", { 10, 9, 2 }, "10.9.2", "10.9.2" },
        TextCase { "NegativePatch", { 10, 9, -1 }, "10.9", "10.9.-1" }),
    [](const auto& info) { return std::string(info.param.name); });

struct ParseCase {
    const char* name;
    QString text;
    QXVersion expected;
};

class Parsing : public testing::TestWithParam<ParseCase> { };

TEST_P(Parsing, TakesLeadingDigitsOfTheFirstThreeComponents)
{
    EXPECT_EQ(QXVersionFromString(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Texts, Parsing,
    testing::Values(ParseCase { "FourthPartIgnored", "10.13.6.1", { 10, 13, 6 } },
        ParseCase { "WordComponent", "10.x.3", { 10, 0, 3 } },
        ParseCase { "NullText", QString(), { 0, 0, 0 } },
        ParseCase { "MajorOnly", "10", { 10, 0, 0 } },
        ParseCase { "TrailingLetters", "6b2.1", { 6, 1, 0 } },
        ParseCase { "LeadingBlank", " 7.\t8", { 7, 8, 0 } },
        ParseCase { "Signs", "-3.+4.-0", { -3, 4, 0 } },
        ParseCase { "BlankAfterSign", "- 3", { 0, 0, 0 } },
        ParseCase { "Saturates", "99999999999999999999.-99999999999999999999",
            { INT64_MAX, INT64_MIN, 0 } }),
    [](const auto& info) { return std::string(info.param.name); });

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
