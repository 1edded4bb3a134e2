// SPDX-License-Identifier: GPL-3.0-or-later
// The real Tolvane.app updating itself under the test's X server and session bus: a copy of the
// built bundle in a temporary Applications folder, a feed and signed archives on a server on
// 127.0.0.1, keys made by tolvane-release, and the user's "Install Update" given with the keyboard.
#include "HttpTestServer.h"
#include "RunningApplication.h"
#include "UserDefaults.h"

#include <QTemporaryDir>
#include <csignal>

namespace {

using namespace RunningApplication;

QString bundleVersion(const QString& bundle)
{
    return PropertyList::readDictionary(bundle + "/Contents/Info.plist")
        .value_or(QVariantMap())
        .value("CFBundleVersion")
        .toString();
}

// The server of the test answers from the event loop, which runs meanwhile.
bool ends(QProcess& process)
{
    return TestEnvironment::waitUntil(
        [&] { return process.state() == QProcess::NotRunning; }, 120000);
}

// Everything under the folder with its size, to tell a whole bundle from a changed one.
QString listing(const QString& folder)
{
    return output("find", { folder, "-printf", "%P %s %m\\n" });
}

class UpdateEndToEnd : public testing::Test {
public:
    void SetUp() override
    {
        publicKey = output(TOLVANE_RELEASE_TOOL, { "generate-keys", "--private-key", privateKey });
        copyBundle(bundle,
            { { "SUFeedURL", server.url("/appcast.xml").toString() },
                { "SUPublicEDKey", publicKey } });
        oldListing = listing(bundle);
        TestEnvironment::writeFile(document, "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 10 10\n");

        makeCheckDue(false);
    }

    // The schedule's time has come: the first check goes out as soon as launching is done.
    static void makeCheckDue(bool downloads)
    {
        UserDefaults defaults(busName);
        defaults.setBool(true, "SUEnableAutomaticChecks");
        defaults.setBool(downloads, "SUAutomaticallyUpdate");
        defaults.setObject(QDateTime::currentDateTimeUtc().addDays(-2), "SULastCheckTime");
        ASSERT_TRUE(defaults.synchronize());
    }

    void TearDown() override
    {
        if (const qint64 owner = busNameOwner(); owner > 0 && owner != tolvane.processId())
            ::kill(pid_t(owner), SIGTERM);
        stop(tolvane);
    }

    // Tolvane 2.0: the built bundle as version 200, or `change` applied to a copy of it.
    QByteArray releaseArchive(const std::function<void(const QString&)>& change = {})
    {
        QTemporaryDir folder(TestEnvironment::home() + "/release-XXXXXX");
        const QString copy = folder.path() + "/Tolvane.app";
        copyBundle(copy,
            { { "CFBundleVersion", "200" }, { "CFBundleShortVersionString", "2.0" },
                { "SUFeedURL", server.url("/appcast.xml").toString() },
                { "SUPublicEDKey", publicKey } });
        if (change)
            change(copy);
        const QString archive = folder.path() + "/Tolvane-2.0.tar.gz";
        output("tar",
            { "-C", folder.path(), "--use-compress-program=gzip -1", "-cf", archive,
                "Tolvane.app" });
        return TestEnvironment::readFile(archive);
    }

    // Serves the archive, signed with the key of this test (or another), and the feed of it.
    void publish(const QByteArray& archive, const QString& key = {})
    {
        const QString path = TestEnvironment::home() + "/served.tar.gz";
        TestEnvironment::writeFile(path, archive);
        const QString attributes = output(TOLVANE_RELEASE_TOOL,
            { "sign", "--private-key", key.isEmpty() ? privateKey : key, path });
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
        tolvane.setProcessEnvironment(xEnvironment());
        tolvane.setProcessChannelMode(QProcess::MergedChannels);
        tolvane.start(bundle + "/Contents/Linux/Tolvane", { document });
        ASSERT_TRUE(tolvane.waitForStarted());
        ASSERT_TRUE(TestEnvironment::waitUntil(
            [&] { return busNameOwner() == tolvane.processId(); }, 30000));
    }

    // Waits until Tolvane has logged a line holding the text.
    bool logged(const QString& text)
    {
        return TestEnvironment::waitUntil(
            [&] {
                log += QString::fromUtf8(tolvane.readAll());
                return log.contains(text);
            },
            120000);
    }

    // The user answers the update window with Return, its default button "Install Update", once
    // it shows and until it has gone: a key may miss a window that is still being mapped.
    void pressInstallUpdate()
    {
        const QStringList search { "search", "--onlyvisible", "--name", "^Software Update$" };
        bool shown = false;
        ASSERT_TRUE(TestEnvironment::waitUntil(
            [&] {
                const QString window = output("xdotool", search).section('\n', 0, 0);
                if (window.isEmpty())
                    return shown;
                shown = true;
                QProcess::execute("xdotool", { "windowfocus", "--sync", window });
                QProcess::execute("xdotool", { "key", "--window", window, "Return" });
                return false;
            },
            120000));
    }

    QStringList leftovers() const
    {
        QStringList found
            = QDir(applications).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        found.removeOne("Tolvane.app");
        return found;
    }

    HttpTestServer server;
    QString privateKey = TestEnvironment::home() + "/key";
    QString publicKey;
    QString applications = TestEnvironment::home() + "/Applications";
    QString bundle = applications + "/Tolvane.app";
    QString oldListing;
    QString document = TestEnvironment::home() + "/Poster.eps";
    QProcess tolvane;
    QString log;
};

TEST_F(UpdateEndToEnd, InstallUpdateReplacesTheBundleAndTheNewCopyTakesOver)
{
    publish(releaseArchive());
    start();
    pressInstallUpdate();
    ASSERT_TRUE(ends(tolvane));
    EXPECT_EQ(tolvane.exitCode(), 0) << tolvane.readAll().toStdString();
    EXPECT_EQ(bundleVersion(bundle), "200");
    EXPECT_EQ(QFileInfo(QString("/proc/%1/exe").arg(busNameOwner())).canonicalFilePath(),
        QFileInfo(bundle + "/Contents/Linux/Tolvane").canonicalFilePath());
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
    // The schedule's request carried the delegate's parameters.
    ASSERT_FALSE(server.requests().isEmpty());
    EXPECT_TRUE(server.requests()[0].requestLine.contains("appid=TLV"));
    EXPECT_TRUE(server.requests()[0].requestLine.contains("type=RA"));
}

// The failures before the swap are the updater's own tests; these pass through the release tool's
// signature and the relaunch of the new copy. After each the old copy stays whole, keeps running
// and owns its name again.
TEST_F(UpdateEndToEnd, AnotherKeysSignatureOrANewCopyThatDoesNotStartLeavesTheOldCopyRunning)
{
    const QString otherKey = TestEnvironment::home() + "/other-key";
    output(TOLVANE_RELEASE_TOOL, { "generate-keys", "--private-key", otherKey });
    for (const bool signedByAnother : { true, false }) {
        SCOPED_TRACE(
            signedByAnother ? "signed with another key" : "a new copy that does not start");
        if (signedByAnother)
            publish(releaseArchive(), otherKey);
        else
            publish(releaseArchive([](const QString& copy) {
                TestEnvironment::writeFile(copy + "/Contents/Linux/Tolvane", "#!/bin/sh\nexit 1\n");
            }));
        makeCheckDue(false);
        log.clear();
        start();
        pressInstallUpdate();
        ASSERT_TRUE(logged("ERROR -- The update was not installed")) << log.toStdString();
        EXPECT_TRUE(TestEnvironment::waitUntil(
            [&] { return busNameOwner() == tolvane.processId(); }, 30000));
        EXPECT_EQ(listing(bundle), oldListing);
        EXPECT_TRUE(TestEnvironment::waitUntil([&] { return leftovers().isEmpty(); }, 30000))
            << leftovers().join(", ").toStdString();
        stop(tolvane);
    }
}

// With the preferences' "download" choice, Tolvane 2.0 is prepared and installed when the session
// ends the application (SIGTERM). A swap that fails then (something removed the prepared copy)
// keeps the old copy working.
TEST_F(UpdateEndToEnd, TheDownloadChoiceInstallsWhenTheSessionEndsTheApplication)
{
    publish(releaseArchive());
    for (const bool removePreparedCopy : { true, false }) {
        makeCheckDue(true);
        start();
        ASSERT_TRUE(logged("will be installed when Tolvane quits")) << log.toStdString();
        for (const QString& name : removePreparedCopy ? leftovers() : QStringList())
            QDir(applications + "/" + name + "/Tolvane.app").removeRecursively();
        tolvane.terminate();
        ASSERT_TRUE(ends(tolvane));
        log = QString::fromUtf8(tolvane.readAll());
        EXPECT_EQ(log.contains("ERROR -- The update was not installed"), removePreparedCopy);
        if (removePreparedCopy)
            EXPECT_EQ(listing(bundle), oldListing);
        else
            EXPECT_EQ(bundleVersion(bundle), "200");
        EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
    }
}

}
