// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppleEventManager.h"
#include "Bundle.h"
#include "FakeDesktop.h"
#include "HttpTestServer.h"
#include "PropertyList.h"
#include "SUUpdater.h"
#include "TLAppDelegate.h"
#include "TLApplication.h"
#include "TestEnvironment.h"
#include "UserDefaults.h"
#include "VariantKinds.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QTimer>
#include <cstdio>
#include <gtest/gtest.h>

namespace {

// On a supported system the launch goes on and writes its own keys, automatic checks turned on.
// The user's settings in a file it cannot read are moved aside, said in one line, and never
// deleted; the new file is readable.
TEST(UnreadablePreferences, AreMovedAsideByALaunchThatGoesOn)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const QString path = UserDefaults::pathForDomain(Bundle::mainBundle().bundleIdentifier());
    const QByteArray truncated = "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>Use";
    TestEnvironment::writeFile(path, truncated);
    EXPECT_EXIT(
        {
            qputenv("TOLVANE_SYSTEM_VERSION", "3.10.0");
            UserDefaults& defaults = UserDefaults::standardUserDefaults();
            // Registered, not stored: the stored settings are the unreadable file.
            defaults.registerDefaults({ { "moveToApplicationsFolderAlertSuppress", true } });
            testing::internal::CaptureStderr();
            {
                TLAppDelegate delegate;
                delegate.applicationWillFinishLaunching();
                delegate.applicationDidFinishLaunching();
                defaults.synchronize();
            }
            const QString log = QString::fromStdString(testing::internal::GetCapturedStderr());
            std::fprintf(stderr, "%s", qPrintable(log));
            std::_Exit(log.count(QStringLiteral("WARNING -- the preferences file")) == 1 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "WARNING -- the preferences file .* could not be read");
    const QDir folder = QFileInfo(path).dir();
    const QStringList aside = folder.entryList({ QFileInfo(path).fileName() + ".unreadable-*" });
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(TestEnvironment::readFile(folder.filePath(aside.first())), truncated);
    const QVariantMap fresh = PropertyList::readDictionary(path).value_or(QVariantMap());
    EXPECT_TRUE(VariantKinds::same(fresh.value("SUEnableAutomaticChecks"), true));
    EXPECT_TRUE(VariantKinds::same(fresh.value("Preferences Application Version"), QString("2.5")));
}

// The application as it runs, in a death test's child: a server stands in for the feed, and the
// schedule's time for a check has come. `poll` runs every 20 ms and ends the child once it has
// seen what it waits for.
[[noreturn]] void runApplication(
    const char* system, const std::function<void(HttpTestServer&)>& poll)
{
    qputenv("TOLVANE_SYSTEM_VERSION", system);
    HttpTestServer server;
    // The test bundle is outside any Applications folder: the launch would first offer to move it.
    UserDefaults::standardUserDefaults().setBool(true, "moveToApplicationsFolderAlertSuppress");
    UserDefaults::standardUserDefaults().setBool(true, "SUEnableAutomaticChecks");
    UserDefaults::standardUserDefaults().setObject(
        QDateTime::currentDateTimeUtc().addDays(-2), "SULastCheckTime");
    SUUpdater::sharedUpdater()->setFeedURL(server.url("/appcast.xml"));
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        // Not again while it spins the event loop itself.
        timer.stop();
        poll(server);
        timer.start();
    });
    timer.start(20);
    TLApplication application(*qApp);
    application.run();
    std::_Exit(3);
}

// The launch ends with status 0 at the alert, which names the system without a zero patch and
// comes after the handler and the settings are registered. Meanwhile it never finishes: a later
// launch hands over a file and the schedule's time has come, and neither may do anything.
TEST(UnsupportedSystem, ShowsTheAlertAndEndsHavingOpenedTheWebsiteOnRequest)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    FakeOpener opener;
    const QString document = TestEnvironment::home() + "/Poster.eps";
    TestEnvironment::writeFile(document, "%!PS-Adobe-3.0 EPSF-3.0\n");
    const struct {
        const char* system;
        const char* shownVersion;
        const char* button;
    } cases[] = { { "2.6.32", "2\\.6\\.32", "Cancel" }, { "3.9.0", "3\\.9", "Check for Update" } };
    for (const auto& c : cases) {
        EXPECT_EXIT(
            runApplication(c.system,
                [&](HttpTestServer& server) {
                    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                    if (!box)
                        return;
                    QProcess later;
                    later.start("gdbus",
                        { "call", "--session", "--dest", "app.tolvane.AppTests", "--object-path",
                            "/app/tolvane/AppTests", "--method", "org.freedesktop.Application.Open",
                            "['" + QUrl::fromLocalFile(document).toString() + "']", "{}" });
                    TestEnvironment::waitUntil(
                        [&] { return later.state() == QProcess::NotRunning; }, 30000);
                    // Long enough for a zero-delay timer and the forwarded request.
                    TestEnvironment::waitUntil([] { return false; }, 500);
                    int windows = 0;
                    for (QWidget* widget : QApplication::topLevelWidgets())
                        windows += widget->isVisible() && widget != box;
                    std::fprintf(stderr,
                        "alert: %s | %s | handler %d defaults %d | forwarded %d windows %d "
                        "requests %d\n",
                        qPrintable(box->text()), qPrintable(box->informativeText()),
                        NSAppleEventManager::sharedAppleEventManager().dispatchGetURL(
                            "tolvane://nothing"),
                        UserDefaults::standardUserDefaults().registeredDefaults().contains(
                            "UseLoupe"),
                        later.exitCode() == 0, windows, int(server.requests().size()));
                    for (QAbstractButton* button : box->buttons()) {
                        if (button->text() == c.button)
                            button->click();
                    }
                }),
            testing::ExitedWithCode(0),
            QStringLiteral(
                "alert: This version of Tolvane, version 2\\.5, is incompatible with Mac OS X "
                "%1 \\| Visit our website to check for a newer version of the application\\. "
                "\\| handler 1 defaults 1 \\| forwarded 1 windows 0 requests 0")
                .arg(c.shownVersion)
                .toStdString());
    }
    // The children share the home folder, so what they opened is seen here: the website once,
    // for "Check for Update" and not for "Cancel" (which came first).
    TestEnvironment::waitUntil([&] { return !opener.recordedArguments().isEmpty(); }, 5000);
    EXPECT_EQ(opener.recordedArguments(), QStringList { "https://tolvane.example/" });
}

}
