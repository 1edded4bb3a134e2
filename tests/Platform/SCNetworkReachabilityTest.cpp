// SPDX-License-Identifier: GPL-3.0-or-later
#include "SCNetworkReachability.h"

#include "NetworkDiagnostics.h"
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
    EXPECT_FALSE(reachable(""));
    EXPECT_FALSE(reachable(nullptr));
    // Away from the event loop's thread the wait blocks instead.
    EXPECT_TRUE(std::async(std::launch::async, [] { return reachable("localhost"); }).get());
}

TEST(Reachability, ATargetIsMadeForANameOnly)
{
    EXPECT_EQ(SCNetworkReachabilityCreateWithName(nullptr), nullptr);
    SCNetworkReachabilityFlags flags = 7;
    EXPECT_FALSE(SCNetworkReachabilityGetFlags(nullptr, &flags));
    EXPECT_EQ(flags, 7u);

    const SCNetworkReachabilityRef target = SCNetworkReachabilityCreateWithName("localhost");
    ASSERT_TRUE(SCNetworkReachabilityGetFlags(target.get(), &flags));
    EXPECT_EQ(flags, kSCNetworkReachabilityFlagsReachable);
}

// A stand-in for a settings program, alone on PATH, that notes its arguments; the desktop is the
// given one meanwhile.
class FakeSettingsProgram {
public:
    FakeSettingsProgram(const QString& name, const QByteArray& desktop)
        : m_savedPath(qgetenv("PATH"))
        , m_savedDesktop(qgetenv("XDG_CURRENT_DESKTOP"))
        , m_log(TestEnvironment::home() + "/" + name + ".log")
    {
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        const QString folder = TestEnvironment::home() + "/settings-bin";
        TestEnvironment::writeFile(
            folder + "/" + name, "#!/bin/sh\necho \"$*\" > '" + QFile::encodeName(m_log) + "'\n");
        QFile::setPermissions(folder + "/" + name, QFile::ReadOwner | QFile::ExeOwner);
        qputenv("PATH", QFile::encodeName(folder));
    }
    ~FakeSettingsProgram()
    {
        qputenv("PATH", m_savedPath);
        qputenv("XDG_CURRENT_DESKTOP", m_savedDesktop);
    }

    bool waitForArguments(const QByteArray& expected)
    {
        return TestEnvironment::waitUntil(
            [&] { return QFile::exists(m_log) && TestEnvironment::readFile(m_log) == expected; },
            10000);
    }

private:
    QByteArray m_savedPath;
    QByteArray m_savedDesktop;
    QString m_log;
};

TEST(NetworkDiagnostics, OpensTheDesktopsNetworkSettings)
{
    FakeSettingsProgram settings("systemsettings", "KDE");
    ASSERT_TRUE(openNetworkDiagnostics());
    EXPECT_TRUE(settings.waitForArguments("kcm_networkmanagement\n"));
}

TEST(NetworkDiagnostics, FallsBackToTheConnectionEditor)
{
    FakeSettingsProgram settings("nm-connection-editor", "GNOME");
    ASSERT_TRUE(openNetworkDiagnostics());
    EXPECT_TRUE(settings.waitForArguments("\n"));
}

}
