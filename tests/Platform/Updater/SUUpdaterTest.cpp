// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUUpdater.h"

#include "HttpTestServer.h"
#include "RecordingUserDriver.h"
#include "TestEnvironment.h"
#include "UserDefaults.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>
#include <memory>

namespace {

// An updater at version 1.5 on system 6.1.0, over defaults of its own, whose feed is a server on
// 127.0.0.1 that serves the test feed; a recording driver and delegate listen.
class UpdaterFixture : public testing::Test {
protected:
    void SetUp() override
    {
        static int domainNumber = 0;
        defaults = std::make_unique<UserDefaults>(
            QStringLiteral("app.tolvane.UpdaterTest%1").arg(++domainNumber));
        updater = std::make_unique<SUUpdater>(*defaults, QStringLiteral("1.5"));
        updater->setFeedURL(server.url("/tolvane/appcast.xml"));
        updater->setHostSystemVersion(QStringLiteral("6.1.0"));
        updater->setUserDriver(&driver);
        updater->setDelegate(&delegate);
        QObject::connect(
            updater.get(), &SUUpdater::updateCheckFinished, [this] { ++finishedChecks; });
        server.respond({ 200, feed("appcast.xml") });
        updater->startUpdater();
    }

    // Runs one check to its end; false when it did not end within a minute.
    bool check(bool userInitiated)
    {
        const int before = finishedChecks;
        userInitiated ? updater->checkForUpdates() : updater->checkForUpdatesInBackground();
        return TestEnvironment::waitUntil([&] { return finishedChecks > before; }, 60000);
    }

    static QByteArray feed(const QString& name)
    {
        return TestEnvironment::readFile(TestEnvironment::dataPath("updater/" + name));
    }

    HttpTestServer server;
    RecordingUserDriver driver;
    RecordingDelegate delegate;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<SUUpdater> updater;
    int finishedChecks = 0;
};

using FeedRequest = UpdaterFixture;

QVariantMap parameter(const QString& key, const QString& value)
{
    return { { "key", key }, { "value", value } };
}

// A delegate that throws leaves the parameters out, and the check still ends.
TEST_F(FeedRequest, CarriesTheDelegatesParametersPercentEncodedOnEveryCheck)
{
    updater->setFeedURL(server.url("/tolvane/appcast.xml?channel=beta"));
    delegate.parameters = { parameter("app", "Tolvane Pro"), parameter("q&a", "x=y/\u00fc+1%") };
    ASSERT_TRUE(check(true));
    delegate.parameters = { parameter("lang", "zh-Hans") };
    ASSERT_TRUE(check(false));
    delegate.throws = true;
    ASSERT_TRUE(check(true));
    QByteArrayList requestLines;
    for (const HttpTestServer::Request& request : server.requests())
        requestLines.append(request.requestLine);
    EXPECT_EQ(requestLines,
        QByteArrayList({ "GET /tolvane/appcast.xml?channel=beta&app=Tolvane%20Pro"
                         "&q%26a=x%3Dy%2F%C3%BC%2B1%25 HTTP/1.1",
            "GET /tolvane/appcast.xml?channel=beta&lang=zh-Hans HTTP/1.1",
            "GET /tolvane/appcast.xml?channel=beta HTTP/1.1" }));
    EXPECT_EQ(delegate.parameterRequests, 3);
    EXPECT_FALSE(delegate.sentProfile);
}

using FeedOutcome = UpdaterFixture;

TEST_F(FeedOutcome, UpToDateAtTheSameOrANewerVersion)
{
    updater->setHostVersion("2.0.1");
    ASSERT_TRUE(check(true));
    EXPECT_EQ(driver.upToDateVersion, "2.0.1");
    // At the feed's own version, the newer one for another system is named.
    updater->setHostVersion("2.0");
    ASSERT_TRUE(check(true));
    EXPECT_EQ(driver.calls, QStringList({ "notFound", "notFound" }));
    EXPECT_EQ(delegate.outcomes, QStringList({ "none", "none" }));
    EXPECT_EQ(driver.note,
        "updater_tests 2.1 is available, but it needs system version 99.0 or later; this system "
        "is 6.1.0.");
}

TEST_F(FeedOutcome, AnErrorIsShownAndSaysWhatHappened)
{
    server.respond({ 404, "gone" });
    ASSERT_TRUE(check(true));
    EXPECT_EQ(driver.calls, QStringList { "error" });
    EXPECT_EQ(delegate.outcomes, QStringList { "abort" });
    ASSERT_TRUE(driver.error);
    EXPECT_EQ(driver.error->kind, SUUpdaterError::ServerError);
    EXPECT_TRUE(driver.error->localizedDescription().contains("404"));

    server.respond({ 200, feed("malformed.xml") });
    ASSERT_TRUE(check(true));
    EXPECT_EQ(driver.error->kind, SUUpdaterError::MalformedFeed);
    EXPECT_TRUE(driver.error->localizedDescription().contains("line 9"))
        << driver.error->localizedDescription().toStdString();

    updater->setFeedURL(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(closedLocalPort())));
    ASSERT_TRUE(check(true));
    EXPECT_EQ(driver.error->kind, SUUpdaterError::NoNetwork);

    updater->setFeedURL(QUrl());
    ASSERT_TRUE(check(true));
    EXPECT_EQ(driver.error->kind, SUUpdaterError::NoFeedURL);
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(FeedOutcome, ServerThatNeverAnswersEndsAtTheTimeLimit)
{
    server.neverAnswer();
    updater->setRequestTimeout(300);
    QElapsedTimer clock;
    clock.start();
    updater->checkForUpdates();
    // The limit starts with the request; held until the request is here, it cannot run out
    // before the server has it.
    ASSERT_TRUE(server.waitForRequestsHoldingTimers(1));
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return finishedChecks == 1; }, 10000))
        << "the check hangs";
    // Qt's coarse timers may fire up to 5% early.
    EXPECT_GE(clock.elapsed(), 285);
    EXPECT_EQ(driver.calls, QStringList { "error" });
    ASSERT_TRUE(driver.error);
    EXPECT_EQ(driver.error->kind, SUUpdaterError::TimedOut);
    EXPECT_FALSE(updater->updateInProgress());
}

using BackgroundCheck = UpdaterFixture;

// The schedule checks once the interval has passed, following the defaults as another process
// writes them. Every check, a failed one too, is noted as a date.
TEST_F(BackgroundCheck, ShowsAFoundUpdateButNothingElseAndNotesTheTime)
{
    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
    defaults->setObject(before.addDays(-2), "SULastCheckTime");
    defaults->setBool(true, "SUEnableAutomaticChecks");
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return finishedChecks == 1; }, 60000))
        << "no scheduled check";
    EXPECT_EQ(driver.calls, QStringList { "found" });
    EXPECT_FALSE(driver.found->userInitiated);
    EXPECT_EQ(server.requests().size(), 1);
    updater->setAutomaticallyChecksForUpdates(false);
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

// A first start counts as a check: the first scheduled one comes a whole interval later.
TEST_F(Schedule, WaitsForTheRestOfTheIntervalButAtLeastAnHour)
{
    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
    updater->setAutomaticallyChecksForUpdates(true);
    const QDateTime recorded = updater->lastUpdateCheckDate();
    EXPECT_GE(recorded, before) << "a first start records no time";
    EXPECT_EQ(updater->nextUpdateCheckDate(), recorded.addSecs(86400));

    const QDateTime last = QDateTime::currentDateTimeUtc().addSecs(-60);
    defaults->setObject(last, "SULastCheckTime");
    updater->setUpdateCheckInterval(4 * 3600);
    EXPECT_EQ(updater->nextUpdateCheckDate(), last.addSecs(4 * 3600));
    updater->setUpdateCheckInterval(10);
    EXPECT_EQ(updater->nextUpdateCheckDate(), last.addSecs(3600));
}

}
