// SPDX-License-Identifier: GPL-3.0-or-later
// The real Tolvane.app updating itself under the test's X server and session bus: a copy of the
// built bundle in a temporary Applications folder, a feed and signed archives on a server on
// 127.0.0.1, keys made by tolvane-release, and the user's "Install Update" given with the keyboard.
#include "HttpTestServer.h"
#include "PropertyList.h"
#include "TestEnvironment.h"
#include "UserDefaults.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>

namespace {

const QString busName = QStringLiteral("app.tolvane.Tolvane");

QString run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(120000));
    EXPECT_EQ(process.exitCode(), 0)
        << program.toStdString() << ": " << process.readAllStandardError().toStdString();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

void changeInfo(const QString& bundle, const QVariantMap& changes)
{
    QVariantMap info = PropertyList::readDictionary(bundle + "/Contents/Info.plist").value();
    for (auto it = changes.begin(); it != changes.end(); ++it)
        info.insert(it.key(), it.value());
    ASSERT_TRUE(PropertyList::writeXmlAtomically(info, bundle + "/Contents/Info.plist"));
}

// The server of the test answers from the event loop, which runs meanwhile.
bool ends(QProcess& process)
{
    return TestEnvironment::waitUntil(
        [&] { return process.state() == QProcess::NotRunning; }, 120000);
}

qint64 busNameOwner()
{
    const auto pid = QDBusConnection::sessionBus().interface()->servicePid(busName);
    return pid.isValid() ? qint64(pid.value()) : 0;
}

QString bundleVersion(const QString& bundle)
{
    return PropertyList::readDictionary(bundle + "/Contents/Info.plist")
        .value_or(QVariantMap())
        .value("CFBundleVersion")
        .toString();
}

// Everything under the folder with its size, to tell a whole bundle from a changed one.
QString listing(const QString& folder) { return run("find", { folder, "-printf", "%P %s %m\\n" }); }

class UpdateEndToEnd : public testing::Test {
public:
    void SetUp() override
    {
        ASSERT_FALSE(qgetenv("DISPLAY").isEmpty()) << "needs an X server (xvfb-run)";
        const QString home = TestEnvironment::home();
        publicKey = run(TOLVANE_RELEASE_TOOL, { "generate-keys", "--private-key", home + "/key" });
        applications = home + "/Applications";
        bundle = applications + "/Tolvane.app";
        QDir().mkpath(applications);
        run("cp", { "-a", TOLVANE_APP_BUNDLE, bundle });
        changeInfo(bundle,
            { { "SUFeedURL", server.url("/appcast.xml").toString() },
                { "SUPublicEDKey", publicKey } });
        oldListing = listing(bundle);
        document = home + "/Poster.eps";
        TestEnvironment::writeFile(document, "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 10 10\n");

        // The schedule's time has come: the first check goes out as soon as launching is done.
        UserDefaults defaults(busName);
        defaults.setBool(true, "SUEnableAutomaticChecks");
        defaults.setObject(QDateTime::currentDateTimeUtc().addDays(-2), "SULastCheckTime");
        ASSERT_TRUE(defaults.synchronize());
    }

    void TearDown() override
    {
        if (const qint64 owner = busNameOwner(); owner > 0 && owner != tolvane.processId())
            ::kill(pid_t(owner), SIGTERM);
        if (tolvane.state() != QProcess::NotRunning) {
            tolvane.terminate();
            if (!tolvane.waitForFinished(20000))
                tolvane.kill();
        }
    }

    // Tolvane 2.0: the built bundle as version 200, or `change` applied to a copy of it.
    QByteArray releaseArchive(const std::function<void(const QString&)>& change = {})
    {
        QTemporaryDir folder(TestEnvironment::home() + "/release-XXXXXX");
        const QString copy = folder.path() + "/Tolvane.app";
        run("cp", { "-a", TOLVANE_APP_BUNDLE, copy });
        changeInfo(copy,
            { { "CFBundleVersion", "200" }, { "CFBundleShortVersionString", "2.0" },
                { "SUFeedURL", server.url("/appcast.xml").toString() },
                { "SUPublicEDKey", publicKey } });
        if (change)
            change(copy);
        const QString archive = folder.path() + "/Tolvane-2.0.tar.gz";
        run("tar",
            { "-C", folder.path(), "--use-compress-program=gzip -1", "-cf", archive,
                "Tolvane.app" });
        return TestEnvironment::readFile(archive);
    }

    // Serves the archive, signed with the key of this test (or another), and the feed of it.
    void publish(const QByteArray& archive, const QString& privateKey = {})
    {
        const QString path = TestEnvironment::home() + "/served.tar.gz";
        TestEnvironment::writeFile(path, archive);
        const QString attributes = run(TOLVANE_RELEASE_TOOL,
            { "sign", "--private-key",
                privateKey.isEmpty() ? TestEnvironment::home() + "/key" : privateKey, path });
        server.respondTo("/Tolvane-2.0.tar.gz", { 200, archive, "application/octet-stream" });
        server.respond({ 200,
            QStringLiteral("<?xml version=\"1.0\"?>\n<rss version=\"2.0\" "
                           "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">"
                           "<channel><item><title>Version 2.0</title>"
                           "<sparkle:version>200</sparkle:version>"
                           "<sparkle:shortVersionString>2.0</sparkle:shortVersionString>"
                           "<enclosure url=\"%1\" type=\"application/gzip\" %2/>"
                           "</item></channel></rss>\n")
                .arg(server.url("/Tolvane-2.0.tar.gz").toString(), attributes)
                .toUtf8(),
            "application/rss+xml; charset=utf-8" });
    }

    void start()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "xcb");
        tolvane.setProcessEnvironment(environment);
        tolvane.setProcessChannelMode(QProcess::MergedChannels);
        tolvane.start(bundle + "/Contents/Linux/Tolvane", { document });
        ASSERT_TRUE(tolvane.waitForStarted());
        ASSERT_TRUE(TestEnvironment::waitUntil(
            [&] { return busNameOwner() == tolvane.processId(); }, 30000));
    }

    // Waits until Tolvane has logged a line holding the text.
    bool logged(const QString& text, int milliseconds = 120000)
    {
        return TestEnvironment::waitUntil(
            [&] {
                log += QString::fromUtf8(tolvane.readAll());
                return log.contains(text);
            },
            milliseconds);
    }

    // The user answers the update window with Return, its default button "Install Update".
    // Until the window has gone: a key may miss a window that is still being mapped.
    void pressInstallUpdate()
    {
        const auto updateWindow = [] {
            QProcess search;
            search.start("xdotool", { "search", "--onlyvisible", "--name", "^Software Update$" });
            search.waitForFinished(10000);
            return QString::fromUtf8(search.readAllStandardOutput()).section('\n', 0, 0).trimmed();
        };
        ASSERT_TRUE(TestEnvironment::waitUntil([&] { return !updateWindow().isEmpty(); }, 60000));
        ASSERT_TRUE(TestEnvironment::waitUntil(
            [&] {
                const QString window = updateWindow();
                if (window.isEmpty())
                    return true;
                QProcess::execute("xdotool", { "windowfocus", "--sync", window });
                QProcess::execute("xdotool", { "key", "--window", window, "Return" });
                return false;
            },
            60000));
    }

    // With the preferences' "download" choice, Tolvane 2.0 is downloaded and prepared.
    void prepareInstallAtQuit()
    {
        {
            UserDefaults defaults(busName);
            defaults.setBool(true, "SUAutomaticallyUpdate");
            ASSERT_TRUE(defaults.synchronize());
        }
        publish(releaseArchive());
        start();
        ASSERT_TRUE(logged("will be installed when Tolvane quits")) << log.toStdString();
    }

    QStringList leftovers() const
    {
        QStringList found
            = QDir(applications).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        found.removeOne("Tolvane.app");
        return found;
    }

    HttpTestServer server;
    QString publicKey;
    QString applications;
    QString bundle;
    QString oldListing;
    QString document;
    QProcess tolvane;
    QString log;
};

TEST_F(UpdateEndToEnd, InstallUpdateReplacesTheBundleAndTheNewCopyTakesOver)
{
    publish(releaseArchive());
    start();
    pressInstallUpdate();
    const bool ended = ends(tolvane);
    log += QString::fromUtf8(tolvane.readAll());
    ASSERT_TRUE(ended) << log.toStdString();
    EXPECT_EQ(tolvane.exitStatus(), QProcess::NormalExit) << log.toStdString();
    EXPECT_EQ(tolvane.exitCode(), 0) << log.toStdString();
    EXPECT_EQ(bundleVersion(bundle), "200");
    const qint64 owner = busNameOwner();
    ASSERT_GT(owner, 0);
    EXPECT_NE(owner, tolvane.processId());
    EXPECT_EQ(QFileInfo(QString("/proc/%1/exe").arg(owner)).canonicalFilePath(),
        QFileInfo(bundle + "/Contents/Linux/Tolvane").canonicalFilePath());
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
    // The schedule's request carried the delegate's parameters.
    ASSERT_FALSE(server.requests().isEmpty());
    EXPECT_TRUE(server.requests()[0].requestLine.contains("appid=TLV"));
    EXPECT_TRUE(server.requests()[0].requestLine.contains("type=RA"));
}

struct FailureCase {
    const char* name;
    // Publishes a release that fails at one step.
    std::function<void(UpdateEndToEnd&)> publish;
};
void PrintTo(const FailureCase& value, std::ostream* out) { *out << value.name; }

class FailedUpdateEndToEnd : public UpdateEndToEnd,
                             public testing::WithParamInterface<FailureCase> { };

// The old copy stays whole, keeps running and owns its name again.
TEST_P(FailedUpdateEndToEnd, LeavesTheOldCopyWholeAndRunning)
{
    GetParam().publish(*this);
    start();
    pressInstallUpdate();
    ASSERT_TRUE(logged("ERROR -- The update was not installed")) << log.toStdString();
    EXPECT_TRUE(
        TestEnvironment::waitUntil([&] { return busNameOwner() == tolvane.processId(); }, 30000));
    EXPECT_EQ(tolvane.state(), QProcess::Running);
    EXPECT_EQ(listing(bundle), oldListing);
    EXPECT_TRUE(TestEnvironment::waitUntil([&] { return leftovers().isEmpty(); }, 30000))
        << leftovers().join(", ").toStdString();
}

INSTANTIATE_TEST_SUITE_P(Steps, FailedUpdateEndToEnd,
    // The failures before the swap are the updater's own tests; these two pass through the
    // release tool's signature and the relaunch of the new copy.
    testing::Values(
        FailureCase { "Verify",
            [](UpdateEndToEnd& test) {
                const QString otherKey = TestEnvironment::home() + "/other-key";
                run(TOLVANE_RELEASE_TOOL, { "generate-keys", "--private-key", otherKey });
                test.publish(test.releaseArchive(), otherKey);
            } },
        FailureCase { "Start",
            [](UpdateEndToEnd& test) {
                test.publish(test.releaseArchive([](const QString& copy) {
                    TestEnvironment::writeFile(
                        copy + "/Contents/Linux/Tolvane", "#!/bin/sh\nexit 1\n");
                }));
            } }),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(UpdateEndToEnd, TheDownloadChoiceInstallsWhenTheSessionEndsTheApplication)
{
    prepareInstallAtQuit();
    EXPECT_EQ(bundleVersion(bundle), "100");
    tolvane.terminate(); // SIGTERM
    ASSERT_TRUE(ends(tolvane));
    EXPECT_EQ(tolvane.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(bundleVersion(bundle), "200");
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
}

TEST_F(UpdateEndToEnd, ASwapThatFailsAtQuitKeepsTheOldCopyWorking)
{
    prepareInstallAtQuit();
    // Something removes the prepared copy before the swap.
    for (const QString& name : leftovers())
        QDir(applications + "/" + name + "/Tolvane.app").removeRecursively();
    tolvane.terminate();
    ASSERT_TRUE(ends(tolvane));
    EXPECT_TRUE(logged("ERROR -- The update was not installed")) << log.toStdString();
    EXPECT_EQ(listing(bundle), oldListing);
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();

    // And it starts again as before.
    server.respond({ 404, "no feed today" });
    start();
    EXPECT_EQ(bundleVersion(bundle), "100");
}

}
