// SPDX-License-Identifier: GPL-3.0-or-later
#include "UpdaterFixture.h"

namespace {

using BackgroundCheck = UpdaterFixture;

// Every check, a failed one too, is noted as a date.
TEST_F(BackgroundCheck, ShowsAFoundUpdateButNothingElseAndNotesTheTime)
{
    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
    ASSERT_TRUE(check(false));
    EXPECT_EQ(driver.calls, QStringList { "found" });
    EXPECT_FALSE(driver.found->userInitiated);
    driver.calls.clear();
    updater->setHostVersion("2.0");
    ASSERT_TRUE(check(false));
    defaults->setObject(QDateTime::currentDateTimeUtc().addDays(-3), "SULastCheckTime");
    server.respond({ 404, "gone" });
    ASSERT_TRUE(check(false));
    EXPECT_TRUE(driver.calls.isEmpty());
    EXPECT_EQ(delegate.outcomes, QStringList({ "valid:2.0", "none", "abort" }));
    EXPECT_EQ(defaults->objectForKey("SULastCheckTime").typeId(), QMetaType::QDateTime);
    EXPECT_GE(updater->lastUpdateCheckDate(), before);
    EXPECT_LE(updater->lastUpdateCheckDate(), QDateTime::currentDateTimeUtc().addSecs(1));
}

using Schedule = UpdaterFixture;

TEST_F(Schedule, AFirstStartRecordsTheTimeAndChecksOneIntervalLater)
{
    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
    updater->setAutomaticallyChecksForUpdates(true);
    const QDateTime recorded = updater->lastUpdateCheckDate();
    EXPECT_GE(recorded, before);
    EXPECT_EQ(updater->nextUpdateCheckDate(), recorded.addSecs(86400));
}

TEST(ScheduleStart, NothingIsRequestedBeforeTheUpdaterStartsAndThenWithTheParameters)
{
    HttpTestServer server;
    server.respond({ 200, "<rss><channel><item><sparkle:version/></item></channel></rss>" });
    UserDefaults defaults(QStringLiteral("app.tolvane.ScheduleStartTest"));
    defaults.setBool(true, "SUEnableAutomaticChecks");
    defaults.setObject(QDateTime::currentDateTimeUtc().addDays(-2), "SULastCheckTime");
    SUUpdater updater(defaults, QStringLiteral("1.0"));
    updater.setFeedURL(server.url("/appcast.xml"));
    RecordingDelegate delegate;
    // A record without a key is left out; the query starts after a feed address without one.
    delegate.parameters = { { { "value", "no key" } }, { { "key", "type" }, { "value", "RA" } } };
    updater.setDelegate(&delegate);
    // A check for nothing: a slow machine can make it miss a stray request, never fail it.
    TestEnvironment::waitUntil([] { return false; }, 300);
    EXPECT_TRUE(server.requests().isEmpty());
    EXPECT_FALSE(updater.nextUpdateCheckDate().isValid());

    updater.startUpdater();
    ASSERT_TRUE(server.waitForRequests(1));
    EXPECT_EQ(server.requests()[0].requestLine, "GET /appcast.xml?type=RA HTTP/1.1");
}

TEST_F(Schedule, ChecksWhenTheIntervalHasPassedAndFollowsTheDefaultsFile)
{
    defaults->setObject(QDateTime::currentDateTimeUtc().addDays(-2), "SULastCheckTime");
    // Written directly, as another process would.
    defaults->setBool(true, "SUEnableAutomaticChecks");
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return finishedChecks == 1; }, 60000));
    EXPECT_EQ(driver.calls, QStringList { "found" });
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(Schedule, WaitsForTheRestOfTheIntervalButAtLeastAnHour)
{
    const QDateTime last = QDateTime::currentDateTimeUtc().addSecs(-60);
    defaults->setObject(last, "SULastCheckTime");
    updater->setUpdateCheckInterval(4 * 3600);
    updater->setAutomaticallyChecksForUpdates(true);
    EXPECT_EQ(updater->nextUpdateCheckDate(), last.addSecs(4 * 3600));
    updater->setUpdateCheckInterval(10);
    EXPECT_EQ(updater->nextUpdateCheckDate(), last.addSecs(3600));
}

}
