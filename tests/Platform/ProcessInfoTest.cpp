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

// Read again on every call.
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
    const QString description = ProcessInfo::processInfo().operatingSystemVersionString();
    EXPECT_TRUE(description.startsWith("Version x1.2 (Build ")) << description.toStdString();
}

TEST_F(SystemVersionOverride, AbsentMeansTheKernelRelease)
{
    utsname names {};
    ASSERT_EQ(uname(&names), 0);
    EXPECT_EQ(ProcessInfo::processInfo().operatingSystemVersionString(),
        QStringLiteral("Version %1 (Build %2)").arg(names.release, names.version));
    EXPECT_EQ(ProcessInfo::processInfo().operatingSystemVersion().majorVersion,
        std::strtol(names.release, nullptr, 10));
}

TEST_F(SystemVersionOverride, GestaltGivesHexWithCappedMinorAndPatchOrEachNumberWhole)
{
    for (const auto& [release, expected] :
        { std::pair { "10.13.6", 0x1096 }, std::pair { "10.11.12", 0x1099 } }) {
        setSystem(release);
        std::int32_t response = -1;
        EXPECT_EQ(Gestalt(gestaltSystemVersion, &response), 0);
        EXPECT_EQ(response, expected) << release;
    }
    setSystem("10.13.16");
    std::int32_t minor = 0, bugFix = 0;
    EXPECT_EQ(Gestalt(gestaltSystemVersionMinor, &minor), 0);
    EXPECT_EQ(Gestalt(gestaltSystemVersionBugFix, &bugFix), 0);
    EXPECT_EQ(minor, 13);
    EXPECT_EQ(bugFix, 16);
    std::int32_t response = 1234;
    EXPECT_EQ(Gestalt(0x71717171, &response), -5551);
    EXPECT_EQ(response, 1234);
    EXPECT_EQ(Gestalt(gestaltSystemVersion, nullptr), -50);
}

TEST(SysctlByName, AnswersTheProcessorQuestionsAndNothingElse)
{
    std::int32_t value = -1;
    std::size_t size = 0;
    EXPECT_EQ(sysctlbyname("hw.cpu64bit_capable", nullptr, &size, nullptr, 0), 0);
    EXPECT_EQ(size, sizeof value);
    EXPECT_EQ(sysctlbyname("hw.optional.64bitops", &value, &size, nullptr, 0), 0);
    if (sizeof(void*) == 8) {
        EXPECT_EQ(value, 1);
    }

    value = 7;
    errno = 0;
    EXPECT_EQ(sysctlbyname("kern.osrelease", &value, &size, nullptr, 0), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(value, 7);
    char small = 0;
    size = sizeof small;
    EXPECT_EQ(sysctlbyname("hw.cpu64bit_capable", &small, &size, nullptr, 0), -1);
    size = sizeof value;
    const std::int32_t newValue = 0;
    EXPECT_EQ(sysctlbyname("hw.cpu64bit_capable", &value, &size, &newValue, sizeof newValue), -1);
}

}
