// SPDX-License-Identifier: GPL-3.0-or-later
// The real Tolvane.app, started under the test's own X server and session bus, driven from outside
// as a user's desktop would drive it.
#include "FakeDesktop.h"
#include "TestEnvironment.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QProcess>
#include <gtest/gtest.h>

namespace {

const QString busName = QStringLiteral("app.tolvane.Tolvane");

QString tolvane() { return QStringLiteral(TOLVANE_EXECUTABLE); }

bool instanceOnBus()
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(busName);
}

// The titles of the X server's windows.
QString windowTitles()
{
    QProcess xwininfo;
    xwininfo.start("xwininfo", { "-root", "-tree" });
    xwininfo.waitForFinished(5000);
    return QString::fromUtf8(xwininfo.readAllStandardOutput());
}

class EndToEnd : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(qgetenv("DISPLAY").isEmpty()) << "needs an X server (xvfb-run)";
        environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "xcb");
        // The bundle in the build folder is outside any Applications folder.
        TestEnvironment::suppressMoveToApplicationsOffer();
        document = TestEnvironment::home() + "/Poster one.eps";
        TestEnvironment::writeFile(document, "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 10 10\n");
    }

    void TearDown() override
    {
        if (primary.state() != QProcess::NotRunning) {
            primary.terminate();
            if (!primary.waitForFinished(5000))
                primary.kill();
        }
    }

    void startPrimary(const QStringList& arguments)
    {
        primary.setProcessEnvironment(environment);
        primary.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        primary.start(tolvane(), arguments);
        ASSERT_TRUE(primary.waitForStarted());
        ASSERT_TRUE(TestEnvironment::waitUntil(instanceOnBus, 15000))
            << "the first instance never took its bus name";
    }

    // Runs a later launch, which must hand over its arguments and end at once.
    void launchAgain(const QStringList& arguments)
    {
        QProcess second;
        second.setProcessEnvironment(environment);
        second.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        second.start(tolvane(), arguments);
        ASSERT_TRUE(second.waitForFinished(10000));
        EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(second.exitCode(), 0);
    }

    QProcessEnvironment environment;
    QString document;
    QProcess primary;
};

TEST_F(EndToEnd, ASecondLaunchHandsARevealToTheRunningInstance)
{
    FakeFileManager fileManager;
    ASSERT_TRUE(fileManager.registered());
    startPrimary({ document });
    launchAgain({ "tolvane://reveal/font?path=%2Ffonts%2FA%20Sans.otf&path1=/fonts/B.ttf" });
    ASSERT_TRUE(fileManager.waitForCall(10000));
    EXPECT_EQ(fileManager.calls().constLast(),
        (QStringList { "file:///fonts/A%20Sans.otf", "file:///fonts/B.ttf" }));
}

TEST_F(EndToEnd, ASecondLaunchWithAFileOpensItsWindowInTheFirstInstance)
{
    startPrimary({ document });
    ASSERT_TRUE(TestEnvironment::waitUntil(
        [] { return windowTitles().contains("Poster one.eps"); }, 15000));
    const QString other = TestEnvironment::home() + "/Swatches.ase";
    TestEnvironment::writeFile(other, "ASEF");
    launchAgain({ other });
    EXPECT_TRUE(
        TestEnvironment::waitUntil([] { return windowTitles().contains("Swatches.ase"); }, 15000));
    EXPECT_EQ(primary.state(), QProcess::Running);
}

TEST_F(EndToEnd, MalformedURLsLeaveTheInstanceRunning)
{
    FakeFileManager fileManager;
    startPrimary({ document });
    launchAgain({ "tolvane://reveal/font?path=/a&path1" });
    launchAgain({ "tolvane://reveal/image?path=/%C3" });
    launchAgain({ "tolvane://" });
    launchAgain({ "tolvane://reveal/image?path=/after.png" });
    ASSERT_TRUE(fileManager.waitForCall(10000));
    EXPECT_EQ(fileManager.calls(), QList<QStringList> { { "file:///after.png" } });
    EXPECT_EQ(primary.state(), QProcess::Running);
    EXPECT_TRUE(instanceOnBus());
}

}
