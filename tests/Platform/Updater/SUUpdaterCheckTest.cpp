// SPDX-License-Identifier: GPL-3.0-or-later
#include "UpdaterFixture.h"

#include <QElapsedTimer>

namespace {

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
    EXPECT_EQ(requestLines(),
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

}
