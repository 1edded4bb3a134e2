// SPDX-License-Identifier: GPL-3.0-or-later
// A copy of the real Tolvane.app in the temporary home tells the desktop where it is, and the
// desktop's own tools (xdg-open, gio, the session bus) then find it there, also after it moved.
#include "TestEnvironment.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>
#include <signal.h>

namespace {

const QString busName = QStringLiteral("app.tolvane.Tolvane");

QString output(
    const QString& program, const QStringList& arguments, const QProcessEnvironment& environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    process.waitForFinished(60000);
    return QString::fromUtf8(process.readAllStandardOutput());
}

// The executable of the instance that owns the bus name; empty when none does.
QString runningInstance()
{
    const auto processId = QDBusConnection::sessionBus().interface()->servicePid(busName);
    return processId.isValid()
        ? QFile::symLinkTarget(QString("/proc/%1/exe").arg(processId.value()))
        : QString();
}

void endRunningInstance()
{
    const auto processId = QDBusConnection::sessionBus().interface()->servicePid(busName);
    if (processId.isValid())
        kill(pid_t(processId.value()), SIGTERM);
    TestEnvironment::waitUntil([] { return runningInstance().isEmpty(); }, 30000);
}

class DesktopIntegration : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(qgetenv("DISPLAY").isEmpty()) << "needs an X server (xvfb-run)";
        environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "xcb");
        // No desktop of its own: xdg-open goes by the MIME cache and the desktop entries.
        environment.remove("XDG_CURRENT_DESKTOP");
        environment.remove("XDG_DATA_DIRS");
        applications = TestEnvironment::home() + "/Applications";
        QDir().mkpath(applications);
        ASSERT_EQ(QProcess::execute("cp", { "-al", TOLVANE_APP_BUNDLE, applications }), 0);
    }

    void TearDown() override { endRunningInstance(); }

    QString entry() const
    {
        return QString::fromUtf8(TestEnvironment::readFile(
            TestEnvironment::userLibrary() + "/applications/app.tolvane.Tolvane.desktop"));
    }

    // Starts the copy once, as a user would, and ends it once the desktop knows where it is.
    void startOnce(const QString& bundle)
    {
        QProcess tolvane;
        tolvane.setProcessEnvironment(environment);
        tolvane.start(bundle + "/Contents/Linux/Tolvane");
        const QByteArray cache = "x-scheme-handler/tolvane=app.tolvane.Tolvane.desktop;";
        EXPECT_TRUE(TestEnvironment::waitUntil(
            [&] {
                return entry().contains("TryExec=" + bundle + "/Contents/Linux/Tolvane\n")
                    && TestEnvironment::readFile(
                        TestEnvironment::userLibrary() + "/applications/mimeinfo.cache")
                           .contains(cache);
            },
            60000))
            << entry().toStdString();
        endRunningInstance();
        tolvane.waitForFinished(30000);
    }

    // Hands the argument to xdg-open and waits until an instance of the bundle runs.
    void xdgOpen(const QString& argument, const QString& bundle)
    {
        opener.setProcessEnvironment(environment);
        opener.start("xdg-open", { argument });
        EXPECT_TRUE(TestEnvironment::waitUntil(
            [&] { return runningInstance() == bundle + "/Contents/Linux/Tolvane"; }, 60000))
            << runningInstance().toStdString();
    }

    QProcessEnvironment environment;
    QString applications;
    QProcess opener;
};

TEST_F(DesktopIntegration, TheDesktopsToolsFindTheCopyWhereverItWasLastStarted)
{
    const QString first = applications + "/Tolvane.app";
    startOnce(first);
    xdgOpen("tolvane://settings/quicklook", first);
    endRunningInstance();
    opener.waitForFinished(30000);

    const QString moved = applications + "/Graphics/Tolvane.app";
    QDir().mkpath(applications + "/Graphics");
    ASSERT_TRUE(QDir().rename(first, moved));
    startOnce(moved);
    const QString document = TestEnvironment::home() + "/Poster.ai";
    ASSERT_TRUE(
        QFile::copy(TestEnvironment::dataPath("generator/illustrator-normal.ai"), document));
    xdgOpen(document, moved);

    for (const char* type : { "application/illustrator", "application/x-indesign",
             "application/x-adobe-ase", "x-scheme-handler/tolvane" })
        EXPECT_TRUE(
            output("gio", { "mime", type }, environment)
                .contains(
                    QString("Default application for “%1”: app.tolvane.Tolvane.desktop").arg(type)))
            << type;

    // And Tolvane --unregister takes it all back.
    const QString removed
        = output(moved + "/Contents/Linux/Tolvane", { "--unregister" }, environment);
    EXPECT_EQ(removed.count("removed "), 4) << removed.toStdString();
    EXPECT_EQ(
        output("xdg-mime", { "query", "default", "x-scheme-handler/tolvane" }, environment), "");
}

// A session bus that reads the home's service folder, as the user's own bus does, starts the
// copy by its bus name when GIO asks it for the application.
TEST_F(DesktopIntegration, TheSessionBusStartsTheCopyByItsName)
{
    const QString bundle = applications + "/Tolvane.app";
    startOnce(bundle);
    const QString started = TestEnvironment::home() + "/started";
    // Notes which program took the name, and ends it before the bus goes.
    const QString script
        = "gio open tolvane://settings/about || exit 1\n"
          "for i in $(seq 300); do\n"
          "  pid=$(gdbus call --session -d org.freedesktop.DBus "
          "-o /org/freedesktop/DBus "
          "-m org.freedesktop.DBus.GetConnectionUnixProcessID "
          "app.tolvane.Tolvane 2>/dev/null | sed -n 's/.*uint32 \\([0-9]*\\).*/\\1/p')\n"
          "  [ -n \"$pid\" ] && break; sleep 0.2\n"
          "done\n"
          "readlink \"/proc/$pid/exe\" > \"$1\"; kill \"$pid\"\n";
    QProcess bus;
    bus.setProcessEnvironment(environment);
    bus.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    bus.start("dbus-run-session", { "--", "sh", "-c", script, "sh", started });
    ASSERT_TRUE(bus.waitForFinished(120000));
    EXPECT_EQ(TestEnvironment::readFile(started).trimmed(),
        QFile::encodeName(bundle + "/Contents/Linux/Tolvane"));
}

}
