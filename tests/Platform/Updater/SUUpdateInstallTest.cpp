// SPDX-License-Identifier: GPL-3.0-or-later
#include "InstallFixture.h"

#include <QDir>

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
