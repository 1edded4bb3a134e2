// SPDX-License-Identifier: GPL-3.0-or-later
#include "InstallFixture.h"
#include "PrivilegedExecutor.h"
#include "SUUpdateDriver.h"

#include <QDir>
#include <QNetworkAccessManager>

namespace {

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
    EXPECT_GT(driver.progressCalls, 0);
    EXPECT_EQ(driver.lastProgress.first, driver.lastProgress.second);
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

TEST_F(Installation, TheDownloadChoiceInstallsWhenTheApplicationQuits)
{
    updater->setAutomaticallyDownloadsUpdates(true);
    publish(archiveOf());
    updater->checkForUpdatesInBackground();
    ASSERT_TRUE(
        TestEnvironment::waitUntil([&] { return driver.calls.contains("readyAtQuit"); }, 60000));
    EXPECT_EQ(driver.calls, QStringList { "readyAtQuit" }); // no progress window, no alert
    EXPECT_EQ(driver.found->newVersion, "2.0");
    EXPECT_EQ(UpdateArchives::fingerprint(bundle), oldFingerprint);

    updater->applicationWillTerminate();
    EXPECT_EQ(installedVersion(), "200");
    EXPECT_TRUE(started().isEmpty()); // quitting does not relaunch
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
}

TEST_F(Installation, APreparedUpdateIsNotInstalledOverANewerCopyInstalledMeanwhile)
{
    updater->setAutomaticallyDownloadsUpdates(true);
    publish(archiveOf());
    updater->checkForUpdatesInBackground();
    ASSERT_TRUE(
        TestEnvironment::waitUntil([&] { return driver.calls.contains("readyAtQuit"); }, 60000));
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

// The driver itself, for what the updater does not choose in a test run as root: the privileged
// executor; and a download canceled halfway.
class InstallDriver : public InstallFixture {
protected:
    std::unique_ptr<SUUpdateDriver> driverFor(const PrivilegedExecutor* executor)
    {
        const QByteArray archive = archiveOf();
        server.respondTo("/Tolvane-2.0.tar.xz", { 200, archive });
        SUAppcastItem item;
        item.versionString = "200";
        item.fileURL = server.url("/Tolvane-2.0.tar.xz");
        item.contentLength = archive.size();
        item.edSignature = signatureOf(archive);
        SUInstallHost host;
        host.bundlePath = bundle;
        host.installerPath = QStringLiteral(TOLVANE_UPDATE_INSTALLER);
        host.downloadFolder = updater->downloadFolder();
        host.executor = executor;
        auto driver = std::make_unique<SUUpdateDriver>(network, host, item);
        QObject::connect(driver.get(), &SUUpdateDriver::failed,
            [this](const SUUpdaterError& error) { failure = error; });
        return driver;
    }

    // A stand-in for pkexec: notes its arguments, then runs them or answers as a dismissed dialog.
    PrivilegedExecutor standInExecutor(const QByteArray& action)
    {
        const QString path = TestEnvironment::home() + "/fake-pkexec";
        TestEnvironment::writeFile(path,
            "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$HOME/executor-arguments\"\n" + action + "\n");
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return PrivilegedExecutor(path);
    }

    QNetworkAccessManager network;
};

TEST_F(InstallDriver, ThePrivilegedExecutorRunsTheSameInstaller)
{
    const PrivilegedExecutor executor = standInExecutor("exec \"$@\"");
    auto installation = driverFor(&executor);
    bool relaunched = false;
    QObject::connect(installation.get(), &SUUpdateDriver::relaunched, [&] { relaunched = true; });
    QObject::connect(installation.get(), &SUUpdateDriver::readyToInstall, installation.get(),
        &SUUpdateDriver::installAndRelaunch);
    installation->start();
    ASSERT_TRUE(TestEnvironment::waitUntil(
        [&] { return (relaunched && !started().isEmpty()) || failure; }, 60000));
    EXPECT_FALSE(failure);
    EXPECT_EQ(installedVersion(), "200");
    EXPECT_EQ(started(), "new");
    EXPECT_EQ(TestEnvironment::readFile(TestEnvironment::home() + "/executor-arguments")
                  .split('\n')
                  .value(0),
        QByteArray(TOLVANE_UPDATE_INSTALLER));
}

TEST_F(InstallDriver, CancelingTheDownloadRemovesIt)
{
    const QByteArray archive = archiveOf();
    auto installation = driverFor(nullptr);
    server.respondTo("/Tolvane-2.0.tar.xz",
        { 200, archive, "application/octet-stream", archive.size() / 2, false });
    qint64 received = 0;
    QObject::connect(installation.get(), &SUUpdateDriver::downloadProgress,
        [&](qint64 bytes, qint64) { received = bytes; });
    installation->start();
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return received > 0; }, 60000));
    installation->cancel();
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return failure.has_value(); }, 60000));
    EXPECT_EQ(failure->kind, SUUpdaterError::Canceled);
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
}

}
