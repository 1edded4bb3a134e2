// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProcessInfo.h"

#include <gtest/gtest.h>

namespace {

// Each test starts without the override (see TestEnvironment::setUp).
TEST(SystemVersionOverride, ReleaseNumbersAreTheLeadingNumbers)
{
    struct Case {
        const char* release;
        qint64 major, minor, patch;
    };
    for (const Case& c : { Case { "6.1.0-18-amd64", 6, 1, 0 }, Case { "5", 5, 0, 0 },
             Case { "1.2.3.4", 1, 2, 3 }, Case { "10..3", 10, 0, 0 }, Case { "x1.2", 0, 0, 0 } }) {
        qputenv("TOLVANE_SYSTEM_VERSION", c.release);
        const NSOperatingSystemVersion version
            = ProcessInfo::processInfo().operatingSystemVersion();
        EXPECT_EQ(version.majorVersion, c.major) << c.release;
        EXPECT_EQ(version.minorVersion, c.minor) << c.release;
        EXPECT_EQ(version.patchVersion, c.patch) << c.release;
    }
}

}
