// SPDX-License-Identifier: GPL-3.0-or-later
// The network stand-ins: reachability and the desktop's network settings.
#include "NetworkDiagnostics.h"
#include "SCNetworkReachability.h"
#include "TestEnvironment.h"

#include <QFile>
#include <future>
#include <gtest/gtest.h>

namespace {

bool reachable(const char* name)
{
    SCNetworkConnectionFlags flags = 0xff00;
    SCNetworkCheckReachabilityByName(name, &flags);
    return flags == kSCNetworkFlagsReachable;
}

TEST(Reachability, LocalNamesAndAddressesAreReachableUnresolvableOnesAreNot)
{
    EXPECT_TRUE(reachable("localhost"));
    EXPECT_TRUE(reachable("127.0.0.1"));
    EXPECT_FALSE(reachable("welcome.unresolvable.invalid"));
    EXPECT_FALSE(reachable(nullptr));
    // Away from the event loop's thread the wait blocks instead.
    EXPECT_TRUE(std::async(std::launch::async, [] { return reachable("localhost"); }).get());
    EXPECT_EQ(SCNetworkReachabilityCreateWithName(nullptr), nullptr);
    SCNetworkReachabilityFlags flags = 7;
    const SCNetworkReachabilityRef target = SCNetworkReachabilityCreateWithName("localhost");
    ASSERT_TRUE(SCNetworkReachabilityGetFlags(target.get(), &flags));
    EXPECT_EQ(flags, kSCNetworkReachabilityFlagsReachable);
}

TEST(NetworkDiagnostics, OpensTheCurrentDesktopsNetworkSettings)
{
    // A KDE desktop whose settings program, alone on PATH, notes its arguments.
    const QString folder = TestEnvironment::home() + "/settings-bin";
    const QString log = TestEnvironment::home() + "/settings.log";
    TestEnvironment::writeFile(
        folder + "/systemsettings", "#!/bin/sh\necho \"$*\" > '" + QFile::encodeName(log) + "'\n");
    QFile::setPermissions(folder + "/systemsettings", QFile::ReadOwner | QFile::ExeOwner);
    const QByteArray path = qgetenv("PATH");
    const QByteArray desktop = qgetenv("XDG_CURRENT_DESKTOP");
    qputenv("PATH", QFile::encodeName(folder));
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    const bool opened = openNetworkDiagnostics();
    qputenv("PATH", path);
    qputenv("XDG_CURRENT_DESKTOP", desktop);

    ASSERT_TRUE(opened);
    EXPECT_TRUE(TestEnvironment::waitUntil(
        [&] { return TestEnvironment::readFile(log) == "kcm_networkmanagement\n"; }, 10000));
}

}
