// SPDX-License-Identifier: GPL-3.0-or-later
#include "UpdaterFixture.h"

#include <QElapsedTimer>

namespace {

using FeedRequest = UpdaterFixture;

QVariantMap parameter(const QString& key, const QString& value)
{
    return { { "key", key }, { "value", value } };
}

TEST_F(FeedRequest, CarriesTheDelegatesParametersPercentEncodedAfterTheFeedsOwnQuery)
{
    updater->setFeedURL(server.url("/tolvane/appcast.xml?channel=beta"));
    delegate.parameters = { parameter("app", "Tolvane Pro"), parameter("lang", "zh-Hans"),
        parameter("q&a", "x=y/\u00fc+1%"), parameter("profile", "false") };
    ASSERT_TRUE(check(true));
    ASSERT_EQ(server.requestLines().size(), 1);
    EXPECT_EQ(server.requestLines()[0].toStdString(),
        "GET /tolvane/appcast.xml?channel=beta&app=Tolvane%20Pro&lang=zh-Hans"
        "&q%26a=x%3Dy%2F%C3%BC%2B1%25&profile=false HTTP/1.1");
    EXPECT_EQ(delegate.parameterRequests, 1);
    EXPECT_FALSE(delegate.sentProfile);
}

TEST_F(FeedRequest, StartsTheQueryWhenTheFeedHasNone)
{
    delegate.parameters = { parameter("type", "RA"), { { "value", "record without a key" } } };
    ASSERT_TRUE(check(true));
    ASSERT_EQ(server.requestLines().size(), 1);
    EXPECT_EQ(server.requestLines()[0], "GET /tolvane/appcast.xml?type=RA HTTP/1.1");
}

TEST_F(FeedRequest, IsTheBareFeedWithoutDelegateOrParameters)
{
    updater->setDelegate(nullptr);
    ASSERT_TRUE(check(true));
    ASSERT_EQ(server.requestLines().size(), 1);
    EXPECT_EQ(server.requestLines()[0], "GET /tolvane/appcast.xml HTTP/1.1");
}

TEST_F(FeedRequest, GoesOutWithoutParametersWhenTheDelegateThrows)
{
    delegate.parameters = { parameter("app", "Tolvane") };
    delegate.throws = true;
    ASSERT_TRUE(check(true));
    ASSERT_EQ(server.requestLines().size(), 1);
    EXPECT_EQ(server.requestLines()[0], "GET /tolvane/appcast.xml HTTP/1.1");
    EXPECT_EQ(driver.calls, QStringList { "found" });
}

TEST_F(FeedRequest, AsksForParametersAgainOnEveryCheck)
{
    ASSERT_TRUE(check(true));
    ASSERT_TRUE(check(false));
    EXPECT_EQ(delegate.parameterRequests, 2);
    EXPECT_EQ(server.requestLines().size(), 2);
}

struct AnswerCase {
    const char* name;
    const char* hostVersion;
    int status;
    QByteArray body;
    QStringList driverCalls;
    QStringList delegateOutcomes;
    SUUpdaterError::Kind errorKind = SUUpdaterError::NoNetwork;
};

QByteArray testFeed()
{
    return TestEnvironment::readFile(TestEnvironment::dataPath("updater/appcast.xml"));
}

class FeedAnswer : public UpdaterFixture, public testing::WithParamInterface<AnswerCase> { };

TEST_P(FeedAnswer, GivesTheRightOutcome)
{
    const AnswerCase& c = GetParam();
    updater->setHostVersion(QString::fromUtf8(c.hostVersion));
    server.answer(c.status, c.body);
    ASSERT_TRUE(check(true));
    EXPECT_EQ(driver.calls, c.driverCalls);
    EXPECT_EQ(delegate.outcomes, c.delegateOutcomes);
    if (driver.error) {
        EXPECT_EQ(driver.error->kind, c.errorKind);
        EXPECT_FALSE(driver.error->localizedDescription().isEmpty());
    }
    if (driver.calls == QStringList { "notFound" }) {
        EXPECT_EQ(driver.upToDateVersion, QString::fromUtf8(c.hostVersion));
    }
}

INSTANTIATE_TEST_SUITE_P(Table, FeedAnswer,
    testing::Values(AnswerCase { "Newer", "1.5", 200, testFeed(), { "found" }, { "valid:2.0" } },
        AnswerCase {
            "NewerReleaseOfARunningBeta", "2.0b3", 200, testFeed(), { "found" }, { "valid:2.0" } },
        AnswerCase { "Same", "2.0", 200, testFeed(), { "notFound" }, { "none" } },
        AnswerCase { "SameWrittenLonger", "2.0.0", 200, testFeed(), { "notFound" }, { "none" } },
        AnswerCase { "Older", "2.0.1", 200, testFeed(), { "notFound" }, { "none" } },
        AnswerCase { "Malformed", "1.5", 200,
            TestEnvironment::readFile(TestEnvironment::dataPath("updater/malformed.xml")),
            { "error" }, { "abort" }, SUUpdaterError::MalformedFeed },
        AnswerCase { "HtmlInsteadOfAFeed", "1.5", 200, "<html><body>Welcome</body></html>",
            { "error" }, { "abort" }, SUUpdaterError::MalformedFeed },
        AnswerCase {
            "EmptyBody", "1.5", 200, "", { "error" }, { "abort" }, SUUpdaterError::MalformedFeed },
        AnswerCase { "NotFound", "1.5", 404, "<html>missing</html>", { "error" }, { "abort" },
            SUUpdaterError::ServerError },
        AnswerCase { "ServerFailure", "1.5", 500, "", { "error" }, { "abort" },
            SUUpdaterError::ServerError }),
    [](const testing::TestParamInfo<AnswerCase>& info) { return std::string(info.param.name); });

using FeedOutcome = UpdaterFixture;

TEST_F(FeedOutcome, FoundUpdateCarriesVersionsNotesAndDownloadPage)
{
    ASSERT_TRUE(check(true));
    ASSERT_TRUE(driver.found);
    EXPECT_EQ(driver.found->currentVersion, "1.5");
    EXPECT_EQ(driver.found->newVersion, "2.0 (Spring)");
    EXPECT_EQ(driver.found->downloadPage, QUrl("http://127.0.0.1/tolvane/download/"));
    EXPECT_TRUE(driver.found->item.itemDescription.contains("spot colours"));
    EXPECT_TRUE(driver.found->userInitiated);
}

TEST_F(FeedOutcome, UpToDateNamesANewerVersionForAnotherSystem)
{
    updater->setHostVersion("2.0");
    ASSERT_TRUE(check(true));
    EXPECT_EQ(driver.calls, QStringList { "notFound" });
    EXPECT_EQ(driver.note,
        "updater_tests 2.1 is available, but it needs system version 99.0 or later; this system "
        "is 6.1.0.");
}

TEST_F(FeedOutcome, ServerErrorNamesTheStatus)
{
    server.answer(404, "gone");
    ASSERT_TRUE(check(true));
    ASSERT_TRUE(driver.error);
    EXPECT_EQ(driver.error->httpStatus, 404);
    EXPECT_TRUE(driver.error->localizedDescription().contains("404"));
}

TEST_F(FeedOutcome, MalformedFeedSaysWhereItBreaks)
{
    server.answer(
        200, TestEnvironment::readFile(TestEnvironment::dataPath("updater/malformed.xml")));
    ASSERT_TRUE(check(true));
    ASSERT_TRUE(driver.error);
    EXPECT_TRUE(driver.error->localizedDescription().contains("line 9"))
        << driver.error->localizedDescription().toStdString();
}

TEST_F(FeedOutcome, ServerThatNeverAnswersEndsAtTheTimeLimit)
{
    server.neverAnswer();
    updater->setRequestTimeout(300);
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(check(true, 10000)) << "the check hangs";
    EXPECT_GE(clock.elapsed(), 250);
    EXPECT_EQ(server.requestLines().size(), 1);
    EXPECT_EQ(driver.calls, QStringList { "error" });
    ASSERT_TRUE(driver.error);
    EXPECT_EQ(driver.error->kind, SUUpdaterError::TimedOut);
    EXPECT_FALSE(updater->updateInProgress());
}

TEST_F(FeedOutcome, RefusedConnectionIsNoNetwork)
{
    quint16 closedPort = 0;
    {
        QTcpServer probe;
        ASSERT_TRUE(probe.listen(QHostAddress::LocalHost, 0));
        closedPort = probe.serverPort();
    }
    updater->setFeedURL(QUrl(QStringLiteral("http://127.0.0.1:%1/appcast.xml").arg(closedPort)));
    ASSERT_TRUE(check(true));
    ASSERT_TRUE(driver.error);
    EXPECT_EQ(driver.error->kind, SUUpdaterError::NoNetwork);
    EXPECT_TRUE(driver.error->localizedDescription().contains("could not be reached"));
}

TEST_F(FeedOutcome, MissingFeedAddressIsAClearError)
{
    updater->setFeedURL(QUrl());
    ASSERT_TRUE(check(true));
    ASSERT_TRUE(driver.error);
    EXPECT_EQ(driver.error->kind, SUUpdaterError::NoFeedURL);
    EXPECT_TRUE(server.requestLines().isEmpty());
}

TEST_F(FeedOutcome, UserCheckDuringABackgroundCheckShowsTheOutcome)
{
    updater->setHostVersion("2.0");
    updater->checkForUpdatesInBackground();
    EXPECT_TRUE(updater->updateInProgress());
    ASSERT_TRUE(check(true));
    EXPECT_EQ(server.requestLines().size(), 1);
    EXPECT_EQ(driver.calls, QStringList { "notFound" });
}

}
