// SPDX-License-Identifier: GPL-3.0-or-later
#include "UpdaterFixture.h"

namespace {

using BackgroundCheck = UpdaterFixture;

TEST_F(BackgroundCheck, ShowsAFoundUpdate)
{
    ASSERT_TRUE(check(false));
    EXPECT_EQ(driver.calls, QStringList { "found" });
    EXPECT_FALSE(driver.found->userInitiated);
}

TEST_F(BackgroundCheck, IsSilentWhenUpToDate)
{
    updater->setHostVersion("2.0");
    ASSERT_TRUE(check(false));
    EXPECT_TRUE(driver.calls.isEmpty());
    EXPECT_EQ(delegate.outcomes, QStringList { "none" });
}

TEST_F(BackgroundCheck, IsSilentOnErrors)
{
    server.answer(404, "gone");
    ASSERT_TRUE(check(false));
    server.neverAnswer();
    updater->setRequestTimeout(200);
    ASSERT_TRUE(check(false));
    EXPECT_TRUE(driver.calls.isEmpty());
    EXPECT_EQ(delegate.outcomes, QStringList({ "abort", "abort" }));
}

using LastCheckTime = UpdaterFixture;

TEST_F(LastCheckTime, IsWrittenAsADateAfterEveryCheck)
{
    EXPECT_FALSE(updater->lastUpdateCheckDate().isValid());
    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
    ASSERT_TRUE(check(true));
    const QVariant stored = defaults->objectForKey("SULastCheckTime");
    EXPECT_EQ(stored.typeId(), QMetaType::QDateTime);
    const QDateTime first = updater->lastUpdateCheckDate();
    EXPECT_GE(first, before);
    EXPECT_LE(first, QDateTime::currentDateTimeUtc().addSecs(1));

    // A failed check counts as a check too.
    defaults->setObject(QDateTime::currentDateTimeUtc().addDays(-3), "SULastCheckTime");
    server.answer(500, "");
    ASSERT_TRUE(check(false));
    EXPECT_GE(updater->lastUpdateCheckDate(), before);
}

using UpdaterSettings = UpdaterFixture;

TEST_F(UpdaterSettings, AreOffAndDailyWhenSetNowhere)
{
    EXPECT_FALSE(updater->automaticallyChecksForUpdates());
    EXPECT_FALSE(updater->automaticallyDownloadsUpdates());
    EXPECT_EQ(updater->updateCheckInterval(), 86400);
    defaults->setObject(0, "SUScheduledCheckInterval");
    EXPECT_EQ(updater->updateCheckInterval(), 86400);
    defaults->setObject("soon", "SUScheduledCheckInterval");
    EXPECT_EQ(updater->updateCheckInterval(), 86400);
    updater->setUpdateCheckInterval(7200);
    EXPECT_EQ(updater->updateCheckInterval(), 7200);
}

TEST_F(UpdaterSettings, RoundTripThroughTheDefaultsFileAsBooleans)
{
    int checkSignals = 0;
    int downloadSignals = 0;
    QObject::connect(updater.get(), &SUUpdater::automaticallyChecksForUpdatesChanged,
        [&](bool) { ++checkSignals; });
    QObject::connect(updater.get(), &SUUpdater::automaticallyDownloadsUpdatesChanged,
        [&](bool) { ++downloadSignals; });

    updater->setAutomaticallyChecksForUpdates(true);
    updater->setAutomaticallyDownloadsUpdates(false);
    updater->setAutomaticallyDownloadsUpdates(false); // signalled again, unchanged
    EXPECT_EQ(checkSignals, 1);
    EXPECT_EQ(downloadSignals, 2);
    ASSERT_TRUE(defaults->synchronize());

    UserDefaults reread(defaults->domain());
    const QVariant checks = reread.objectForKey("SUEnableAutomaticChecks");
    const QVariant downloads = reread.objectForKey("SUAutomaticallyUpdate");
    EXPECT_EQ(checks.typeId(), QMetaType::Bool);
    EXPECT_EQ(downloads.typeId(), QMetaType::Bool);
    EXPECT_TRUE(checks.toBool());
    EXPECT_FALSE(downloads.toBool());

    SUUpdater other(reread, "1.0");
    EXPECT_TRUE(other.automaticallyChecksForUpdates());
    EXPECT_FALSE(other.automaticallyDownloadsUpdates());
    other.setAutomaticallyChecksForUpdates(false);
    other.setAutomaticallyDownloadsUpdates(true);
    EXPECT_FALSE(other.automaticallyChecksForUpdates());
    EXPECT_TRUE(other.automaticallyDownloadsUpdates());
}

TEST_F(UpdaterSettings, ReadTextValuesLikeTheDefaultsDo)
{
    defaults->setObject("YES", "SUEnableAutomaticChecks");
    defaults->setObject("NO", "SUAutomaticallyUpdate");
    EXPECT_TRUE(updater->automaticallyChecksForUpdates());
    EXPECT_FALSE(updater->automaticallyDownloadsUpdates());
}

using Schedule = UpdaterFixture;

TEST_F(Schedule, AFirstStartRecordsTheTimeAndChecksOneIntervalLater)
{
    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
    updater->setAutomaticallyChecksForUpdates(true);
    const QDateTime recorded = updater->lastUpdateCheckDate();
    EXPECT_GE(recorded, before);
    EXPECT_EQ(updater->nextUpdateCheckDate(), recorded.addSecs(86400));
    spinFor(300); // long enough for a zero-delay timer to fire
    EXPECT_TRUE(server.requestLines().isEmpty());
}

TEST(ScheduleStart, NothingIsRequestedBeforeTheUpdaterStartsAndThenWithTheParameters)
{
    FeedServer server;
    server.answer(200, "<rss><channel><item><sparkle:version/></item></channel></rss>");
    UserDefaults defaults(QStringLiteral("app.tolvane.ScheduleStartTest"));
    defaults.setBool(true, "SUEnableAutomaticChecks");
    defaults.setObject(QDateTime::currentDateTimeUtc().addDays(-2), "SULastCheckTime");
    SUUpdater updater(defaults, QStringLiteral("1.0"));
    updater.setFeedURL(server.url("/appcast.xml"));
    RecordingDelegate delegate;
    delegate.parameters = { { { "key", "type" }, { "value", "RA" } } };
    updater.setDelegate(&delegate);
    spinFor(300);
    EXPECT_TRUE(server.requestLines().isEmpty());
    EXPECT_FALSE(updater.nextUpdateCheckDate().isValid());

    updater.startUpdater();
    ASSERT_TRUE(spinUntil([&] { return !server.requestLines().isEmpty(); }));
    EXPECT_EQ(server.requestLines()[0], "GET /appcast.xml?type=RA HTTP/1.1");
}

TEST_F(Schedule, ChecksWhenTheIntervalHasPassed)
{
    defaults->setObject(QDateTime::currentDateTimeUtc().addSecs(-2 * 86400), "SULastCheckTime");
    updater->setAutomaticallyChecksForUpdates(true);
    ASSERT_TRUE(spinUntil([&] { return finishedChecks == 1; }));
    EXPECT_EQ(driver.calls, QStringList { "found" });
}

TEST_F(Schedule, WaitsForTheRestOfTheInterval)
{
    const QDateTime last = QDateTime::currentDateTimeUtc().addSecs(-3600);
    defaults->setObject(last, "SULastCheckTime");
    updater->setUpdateCheckInterval(4 * 3600);
    updater->setAutomaticallyChecksForUpdates(true);
    spinFor(300);
    EXPECT_TRUE(server.requestLines().isEmpty());
    EXPECT_EQ(updater->nextUpdateCheckDate(), last.addSecs(4 * 3600));
}

TEST_F(Schedule, NeverChecksMoreOftenThanHourly)
{
    const QDateTime last = QDateTime::currentDateTimeUtc().addSecs(-60);
    defaults->setObject(last, "SULastCheckTime");
    updater->setUpdateCheckInterval(10);
    updater->setAutomaticallyChecksForUpdates(true);
    spinFor(300);
    EXPECT_TRUE(server.requestLines().isEmpty());
    EXPECT_EQ(updater->nextUpdateCheckDate(), last.addSecs(3600));
}

TEST_F(Schedule, StopsWhenAutomaticChecksAreTurnedOff)
{
    defaults->setObject(QDateTime::currentDateTimeUtc().addSecs(-600), "SULastCheckTime");
    updater->setAutomaticallyChecksForUpdates(true);
    EXPECT_TRUE(updater->nextUpdateCheckDate().isValid());
    updater->setAutomaticallyChecksForUpdates(false);
    EXPECT_FALSE(updater->nextUpdateCheckDate().isValid());
    // Forgetting the last check starts none either while checks are off.
    defaults->setObject(QDateTime(), "SULastCheckTime");
    spinFor(300);
    EXPECT_TRUE(server.requestLines().isEmpty());
}

TEST_F(Schedule, FollowsTheSettingWrittenDirectlyToTheDefaults)
{
    defaults->setObject(QDateTime::currentDateTimeUtc().addDays(-2), "SULastCheckTime");
    defaults->setBool(true, "SUEnableAutomaticChecks");
    ASSERT_TRUE(spinUntil([&] { return finishedChecks == 1; }));
    EXPECT_EQ(server.requestLines().size(), 1);
}

}
