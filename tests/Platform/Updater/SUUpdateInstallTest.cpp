// SPDX-License-Identifier: GPL-3.0-or-later
#include "Bundle.h"
#include "HttpTestServer.h"
#include "RecordingUserDriver.h"
#include "SUEd25519.h"
#include "SUUpdater.h"
#include "TestEnvironment.h"
#include "UpdateArchives.h"
#include "UserDefaults.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace {

// Tolvane.app 100 in a temporary Applications folder, signed updates from keys made here, a feed
// and its archives on a server on 127.0.0.1, and an updater that installs with the real installer
// program. The bundles' executables only note that they started.
class InstallFixture : public testing::Test {
public:
    void SetUp() override
    {
        applications = TestEnvironment::home() + "/Applications";
        bundle = applications + "/Tolvane.app";
        UpdateArchives::makeBundle(bundle, "app.tolvane.Tolvane", "100", startedScript("old"),
            { { "SUPublicEDKey", QString::fromLatin1(keys.publicKey.toBase64()) } });
        oldFingerprint = UpdateArchives::fingerprint(bundle);

        static int domainNumber = 0;
        defaults = std::make_unique<UserDefaults>(
            QStringLiteral("app.tolvane.InstallTest%1").arg(++domainNumber));
        updater = std::make_unique<SUUpdater>(*defaults, "100");
        updater->setFeedURL(server.url("/appcast.xml"));
        updater->setHostSystemVersion("6.1.0");
        updater->setHostBundlePath(bundle);
        updater->setInstallerPath(QStringLiteral(TOLVANE_UPDATE_INSTALLER));
        updater->setDownloadFolder(TestEnvironment::home() + "/cache/Updates");
        updater->setUserDriver(&driver);
        driver.answer = SUUpdateAlertChoice::Install;
        QObject::connect(updater.get(), &SUUpdater::updateInstallationFailed,
            [this](const SUUpdaterError& error) { failure = error; });
    }

    static QByteArray startedScript(const QByteArray& which)
    {
        return "#!/bin/sh\necho " + which
            + " > \"$HOME/started.part\"\nmv \"$HOME/started.part\" \"$HOME/started\"\n";
    }

    // The .tar.xz archive of a bundle with the given identifier and version (a copy of Tolvane 2.0
    // unless told otherwise).
    QByteArray archiveOf(
        const QString& version = "200", const QString& identifier = "app.tolvane.Tolvane")
    {
        QTemporaryDir folder(TestEnvironment::home() + "/release-XXXXXX");
        const QString copy = folder.path() + "/Tolvane.app";
        UpdateArchives::makeBundle(copy, identifier, version, startedScript("new"),
            { { "SUPublicEDKey", QString::fromLatin1(keys.publicKey.toBase64()) } });
        TestEnvironment::writeFile(
            copy + "/Contents/Resources/notes.txt", "version " + version.toUtf8());
        return UpdateArchives::pack(UpdateArchives::entriesOf(copy), UpdateArchives::Format::TarXz);
    }

    // Serves the archive and a feed that offers it, signed and with its length.
    void publish(const QByteArray& archive)
    {
        server.respondTo("/Tolvane-2.0.tar.xz", { 200, archive });
        server.respond({ 200,
            QStringLiteral("<?xml version=\"1.0\"?>\n"
                           "<rss version=\"2.0\" "
                           "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">"
                           "<channel><item><title>Version 2.0</title>"
                           "<sparkle:version>200</sparkle:version>"
                           "<sparkle:shortVersionString>2.0</sparkle:shortVersionString>"
                           "<enclosure url=\"%1\" length=\"%2\" type=\"application/x-xz\" "
                           "sparkle:edSignature=\"%3\"/>"
                           "</item></channel></rss>\n")
                .arg(server.url("/Tolvane-2.0.tar.xz").toString())
                .arg(archive.size())
                .arg(QString::fromLatin1(SUEd25519::sign(keys.secretKey, archive).toBase64()))
                .toUtf8() });
    }

    // Which copy started: "new", "old", or nothing.
    QString started() const
    {
        return QString::fromUtf8(TestEnvironment::readFile(TestEnvironment::home() + "/started"))
            .trimmed();
    }

    // The folders and files that an installation may leave beside the bundle and in the
    // download folder.
    QStringList leftovers() const
    {
        QStringList found
            = QDir(applications).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        found.removeOne("Tolvane.app");
        for (const QString& name :
            QDir(updater->downloadFolder()).entryList(QDir::Files | QDir::Hidden))
            found.append("Updates/" + name);
        return found;
    }

    QString installedVersion() const
    {
        const auto installed = Bundle::bundleWithPath(bundle);
        return installed ? installed->objectForInfoDictionaryKey("CFBundleVersion").toString()
                         : QString();
    }

    HttpTestServer server;
    RecordingUserDriver driver;
    SUEd25519::KeyPair keys = SUEd25519::generateKeyPair();
    QString applications;
    QString bundle;
    QString oldFingerprint;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<SUUpdater> updater;
    std::optional<SUUpdaterError> failure;
};

using Installation = InstallFixture;

TEST_F(Installation, ReplacesTheBundleStartsTheNewCopyAndLeavesNothingBehind)
{
    publish(archiveOf());
    int relaunches = 0;
    QObject::connect(updater.get(), &SUUpdater::willRelaunchApplication, [&] { ++relaunches; });
    updater->checkForUpdates();
    ASSERT_TRUE(TestEnvironment::waitUntil(
        [&] { return !started().isEmpty() && !updater->installation(); }, 60000))
        << driver.calls.join(", ").toStdString();
    EXPECT_FALSE(failure) << failure->localizedDescription().toStdString();
    EXPECT_EQ(started(), "new");
    EXPECT_EQ(installedVersion(), "200");
    EXPECT_EQ(relaunches, 1);
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
    EXPECT_EQ(driver.calls.mid(0, 2), QStringList({ "found", "download" }));
    EXPECT_TRUE(driver.calls.contains("status:Installing update…"));
    EXPECT_EQ(driver.calls.constLast(), "dismiss");
}

struct FailureCase {
    const char* name;
    std::function<void(InstallFixture&)> inject;
    SUUpdaterError::Kind kind;
};
void PrintTo(const FailureCase& value, std::ostream* out) { *out << value.name; }

class FailedInstallation : public InstallFixture,
                           public testing::WithParamInterface<FailureCase> { };

// A failure at any step leaves Tolvane 100 exactly as it was, running (nothing was started), and
// no file of the attempt.
TEST_P(FailedInstallation, LeavesTheOldBundleWholeAndNothingBehind)
{
    GetParam().inject(*this);
    updater->checkForUpdates();
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return failure.has_value(); }, 60000))
        << driver.calls.join(", ").toStdString();
    EXPECT_EQ(failure->kind, GetParam().kind) << failure->localizedDescription().toStdString();
    EXPECT_EQ(driver.calls.constLast(), "error");
    EXPECT_EQ(UpdateArchives::fingerprint(bundle), oldFingerprint);
    EXPECT_TRUE(started().isEmpty());
    EXPECT_TRUE(TestEnvironment::waitUntil([&] { return leftovers().isEmpty(); }, 10000))
        << leftovers().join(", ").toStdString();
}

// A failed signature, a refused archive and a new copy that does not start are also the
// application's own end-to-end cases.
INSTANTIATE_TEST_SUITE_P(Steps, FailedInstallation,
    testing::Values(FailureCase { "DownloadTruncated",
                        [](InstallFixture& f) {
                            const QByteArray archive = f.archiveOf();
                            f.publish(archive);
                            f.server.respondTo("/Tolvane-2.0.tar.xz",
                                { 200, archive, "application/octet-stream", archive.size() / 2 });
                        },
                        SUUpdaterError::DownloadFailed },
        FailureCase { "DownloadStalls",
            [](InstallFixture& f) {
                const QByteArray archive = f.archiveOf();
                f.publish(archive);
                f.server.respondTo("/Tolvane-2.0.tar.xz",
                    { 200, archive, "application/octet-stream", 100, false });
                // Shortened once the feed is in, so that only the stalled download can miss it.
                f.driver.whenFound = [&f] { f.updater->setRequestTimeout(500); };
            },
            SUUpdaterError::DownloadFailed },
        FailureCase { "AnotherApplication",
            [](InstallFixture& f) { f.publish(f.archiveOf("200", "org.example.Other")); },
            SUUpdaterError::ArchiveRefused },
        FailureCase { "NotNewer", [](InstallFixture& f) { f.publish(f.archiveOf("100")); },
            SUUpdaterError::ArchiveRefused }),
    [](const auto& info) { return std::string(info.param.name); });

// The download choice prepares the update for the quit, without a window; the application's own
// end-to-end test quits and finds it installed.
TEST_F(Installation, APreparedUpdateIsNotInstalledOverANewerCopyInstalledMeanwhile)
{
    updater->setAutomaticallyDownloadsUpdates(true);
    publish(archiveOf());
    updater->checkForUpdatesInBackground();
    ASSERT_TRUE(
        TestEnvironment::waitUntil([&] { return driver.calls.contains("readyAtQuit"); }, 60000));
    EXPECT_EQ(driver.calls, QStringList { "readyAtQuit" });
    // A package manager puts version 300 in place while Tolvane runs.
    QDir(bundle).removeRecursively();
    UpdateArchives::makeBundle(bundle, "app.tolvane.Tolvane", "300", startedScript("other"));
    updater->applicationWillTerminate();
    EXPECT_EQ(installedVersion(), "300");
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
}

TEST_F(Installation, AStartClearsWhatACrashLeftBehind)
{
    // A crash between the two renames of a file system that cannot swap: the bundle is aside.
    const QString staging = applications + "/.Tolvane.app.update-Ab12Cd";
    QDir().mkpath(staging);
    QDir().rename(bundle, staging + "/previous");
    TestEnvironment::writeFile(updater->downloadFolder() + "/Tolvane-2.0.tar.xz.part", "half");
    updater->startUpdater();
    EXPECT_EQ(UpdateArchives::fingerprint(bundle), oldFingerprint);
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
}

}
