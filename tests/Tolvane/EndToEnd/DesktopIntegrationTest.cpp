// SPDX-License-Identifier: GPL-3.0-or-later
// A copy of the real Tolvane.app in the temporary home tells the desktop where it is, and the
// desktop's own tools (xdg-open, gio, the session bus) then find it there, also after it moved.
#include "RunningApplication.h"

#include <QFile>
#include <signal.h>

namespace {

using namespace RunningApplication;

// The executable of the instance that owns the bus name; empty when none does.
QString runningInstance()
{
    const qint64 owner = busNameOwner();
    return owner > 0 ? QFile::symLinkTarget(QString("/proc/%1/exe").arg(owner)) : QString();
}

void endRunningInstance()
{
    if (const qint64 owner = busNameOwner(); owner > 0)
        kill(pid_t(owner), SIGTERM);
    TestEnvironment::waitUntil([] { return runningInstance().isEmpty(); }, 30000);
}

class DesktopIntegration : public testing::Test {
protected:
    void SetUp() override
    {
        // No desktop of its own: xdg-open goes by the MIME cache and the desktop entries.
        environment.remove("XDG_CURRENT_DESKTOP");
        environment.remove("XDG_DATA_DIRS");
        copyBundle(bundle);
    }

    void TearDown() override { endRunningInstance(); }

    // Starts the copy once, as a user would, and ends it once the desktop knows where it is.
    void startOnce()
    {
        QProcess tolvane;
        tolvane.setProcessEnvironment(environment);
        tolvane.start(bundle + "/Contents/Linux/Tolvane");
        const QString library = TestEnvironment::userLibrary() + "/applications/";
        const auto file
            = [&](const char* name) { return TestEnvironment::readFile(library + name); };
        EXPECT_TRUE(TestEnvironment::waitUntil(
            [&] {
                return file("app.tolvane.Tolvane.desktop")
                           .contains(
                               "TryExec=" + QFile::encodeName(bundle) + "/Contents/Linux/Tolvane\n")
                    && file("mimeinfo.cache")
                           .contains("x-scheme-handler/tolvane=app.tolvane.Tolvane.desktop;");
            },
            60000))
            << file("app.tolvane.Tolvane.desktop").toStdString();
        endRunningInstance();
        tolvane.waitForFinished(30000);
    }

    QProcessEnvironment environment = xEnvironment();
    QString bundle = TestEnvironment::home() + "/Applications/Tolvane.app";
};

// The registration follows the copy when it moves, and --unregister takes it all back.
TEST_F(DesktopIntegration, TheDesktopsToolsFindTheCopyWhereverItWasLastStarted)
{
    startOnce();
    QProcess opener;
    opener.setProcessEnvironment(environment);
    opener.start("xdg-open", { "tolvane://settings/quicklook" });
    EXPECT_TRUE(TestEnvironment::waitUntil(
        [&] { return runningInstance() == bundle + "/Contents/Linux/Tolvane"; }, 60000));
    endRunningInstance();
    opener.waitForFinished(30000);

    const QString moved = TestEnvironment::home() + "/Applications/Graphics/Tolvane.app";
    QDir().mkpath(QFileInfo(moved).absolutePath());
    ASSERT_TRUE(QDir().rename(bundle, moved));
    bundle = moved;
    startOnce();
    const QString document = TestEnvironment::home() + "/Poster.ai";
    ASSERT_TRUE(
        QFile::copy(TestEnvironment::dataPath("generator/illustrator-normal.ai"), document));
    opener.start("xdg-open", { document });
    EXPECT_TRUE(TestEnvironment::waitUntil(
        [&] { return runningInstance() == bundle + "/Contents/Linux/Tolvane"; }, 60000))
        << runningInstance().toStdString();
    for (const char* type : { "application/illustrator", "x-scheme-handler/tolvane" })
        EXPECT_TRUE(
            output("gio", { "mime", type }, environment)
                .contains(
                    QString("Default application for “%1”: app.tolvane.Tolvane.desktop").arg(type)))
            << type;

    // Ended first: a copy still starting registers itself once its window is drawn.
    endRunningInstance();
    opener.waitForFinished(30000);
    const QString removed
        = output(bundle + "/Contents/Linux/Tolvane", { "--unregister" }, environment);
    EXPECT_EQ(removed.count("removed "), 4) << removed.toStdString();
    EXPECT_EQ(
        output("xdg-mime", { "query", "default", "x-scheme-handler/tolvane" }, environment), "");
}

// A session bus that reads the home's service folder, as the user's own bus does, starts the
// copy by its bus name when GIO asks it for the application.
TEST_F(DesktopIntegration, TheSessionBusStartsTheCopyByItsName)
{
    startOnce();
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
    output("dbus-run-session", { "--", "sh", "-c", script, "sh", started }, environment);
    EXPECT_EQ(TestEnvironment::readFile(started).trimmed(),
        QFile::encodeName(bundle + "/Contents/Linux/Tolvane"));
}

}
