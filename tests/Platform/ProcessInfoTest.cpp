// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProcessInfo.h"

#include <cerrno>
#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/utsname.h>

namespace {

class SystemVersionOverride : public testing::Test {
protected:
    void TearDown() override { qunsetenv("TOLVANE_SYSTEM_VERSION"); }
    static void setSystem(const char* release) { qputenv("TOLVANE_SYSTEM_VERSION", release); }
};

TEST_F(SystemVersionOverride, ReleaseNumbersAreTheLeadingNumbers)
{
    struct Case {
        const char* release;
        qint64 major, minor, patch;
    };
    for (const Case& c : { Case { "6.1.0-18-amd64", 6, 1, 0 }, Case { "5", 5, 0, 0 },
             Case { "1.2.3.4", 1, 2, 3 }, Case { "10..3", 10, 0, 0 }, Case { "x1.2", 0, 0, 0 } }) {
        setSystem(c.release);
        const NSOperatingSystemVersion version
            = ProcessInfo::processInfo().operatingSystemVersion();
        EXPECT_EQ(version.majorVersion, c.major) << c.release;
        EXPECT_EQ(version.minorVersion, c.minor) << c.release;
        EXPECT_EQ(version.patchVersion, c.patch) << c.release;
    }
}

TEST_F(SystemVersionOverride, StandsInForTheReleaseInTheDescriptionOnEveryCall)
{
    setSystem("10.9.0");
    EXPECT_EQ(ProcessInfo::processInfo().operatingSystemVersion().minorVersion, 9);
    setSystem("10.14.2");
    EXPECT_EQ(ProcessInfo::processInfo().operatingSystemVersion().minorVersion, 14);
    const QString description = ProcessInfo::processInfo().operatingSystemVersionString();
    EXPECT_TRUE(description.startsWith("Version 10.14.2 (Build ")) << description.toStdString();
    EXPECT_TRUE(description.endsWith(")"));
}

TEST_F(SystemVersionOverride, AbsentMeansTheKernelRelease)
{
    utsname names {};
    ASSERT_EQ(uname(&names), 0);
    const QString description = ProcessInfo::processInfo().operatingSystemVersionString();
    EXPECT_EQ(
        description, QStringLiteral("Version %1 (Build %2)").arg(names.release, names.version));
    EXPECT_EQ(ProcessInfo::processInfo().operatingSystemVersion().majorVersion,
        std::strtol(names.release, nullptr, 10));
}

TEST_F(SystemVersionOverride, GestaltSystemVersionIsHexMajorAndCappedMinorAndPatch)
{
    for (const auto& [release, expected] : { std::pair { "10.13.6", 0x1096 },
             std::pair { "10.11.12", 0x1099 }, std::pair { "100.2.3", 0x10023 } }) {
        setSystem(release);
        std::int32_t response = -1;
        EXPECT_EQ(Gestalt(gestaltSystemVersion, &response), 0);
        EXPECT_EQ(response, expected) << release;
    }
}

TEST_F(SystemVersionOverride, GestaltAnswersEachNumberWhole)
{
    setSystem("10.13.16");
    std::int32_t major = 0, minor = 0, bugFix = 0;
    EXPECT_EQ(Gestalt(gestaltSystemVersionMajor, &major), 0);
    EXPECT_EQ(Gestalt(gestaltSystemVersionMinor, &minor), 0);
    EXPECT_EQ(Gestalt(gestaltSystemVersionBugFix, &bugFix), 0);
    EXPECT_EQ(major, 10);
    EXPECT_EQ(minor, 13);
    EXPECT_EQ(bugFix, 16);
}

TEST(Gestalt, RefusesUnknownSelectorsAndNullResponses)
{
    std::int32_t response = 1234;
    EXPECT_EQ(Gestalt(0x71717171, &response), -5551);
    EXPECT_EQ(response, 1234);
    EXPECT_EQ(Gestalt(gestaltSystemVersion, nullptr), -50);
}

TEST(SysctlByName, AnswersTheProcessorQuestions)
{
    for (const char* name : { "hw.cpu64bit_capable", "hw.optional.64bitops" }) {
        std::int32_t value = -1;
        std::size_t size = sizeof value;
        EXPECT_EQ(sysctlbyname(name, &value, &size, nullptr, 0), 0) << name;
        EXPECT_EQ(size, sizeof value);
        if (sizeof(void*) == 8) {
            EXPECT_EQ(value, 1) << name;
        }
    }
    std::int32_t x86_64 = -1;
    std::size_t size = sizeof x86_64;
    EXPECT_EQ(sysctlbyname("hw.optional.x86_64", &x86_64, &size, nullptr, 0), 0);
#if defined(__x86_64__)
    EXPECT_EQ(x86_64, 1);
#elif defined(__aarch64__)
    EXPECT_EQ(x86_64, 0);
#endif
}

TEST(SysctlByName, ReportsTheSizeWithoutABuffer)
{
    std::size_t size = 0;
    EXPECT_EQ(sysctlbyname("hw.cpu64bit_capable", nullptr, &size, nullptr, 0), 0);
    EXPECT_EQ(size, sizeof(std::int32_t));
}

TEST(SysctlByName, FailsForUnknownNamesSmallBuffersAndWrites)
{
    std::int32_t value = 7;
    std::size_t size = sizeof value;
    errno = 0;
    EXPECT_EQ(sysctlbyname("kern.osrelease", &value, &size, nullptr, 0), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(value, 7);

    char small = 0;
    size = sizeof small;
    EXPECT_EQ(sysctlbyname("hw.cpu64bit_capable", &small, &size, nullptr, 0), -1);

    const std::int32_t newValue = 0;
    size = sizeof value;
    EXPECT_EQ(sysctlbyname("hw.cpu64bit_capable", &value, &size, &newValue, sizeof newValue), -1);
    EXPECT_EQ(sysctlbyname("hw.cpu64bit_capable", &value, nullptr, nullptr, 0), -1);
}

}
