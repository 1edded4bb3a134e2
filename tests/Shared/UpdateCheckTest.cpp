// SPDX-License-Identifier: GPL-3.0-or-later
// The generator's update check against a real HTTP server on 127.0.0.1.
#include "AlertPanel.h"
#include "FakeDesktop.h"
#include "HttpTestServer.h"
#include "PropertyList.h"
#include "TestEnvironment.h"
#include "VistrelAutoUpdate.h"
#include "VistrelUtilities.h"

#include <QDateTime>
#include <gtest/gtest.h>

namespace {

struct ShownAlert {
    QString title;
    QString message;
};

const QByteArray updateAnswer = "<plist version=\"1.0\"><dict>"
                                "<key>QXSoftwareUpdateFoundUpdateKey</key><true/>"
                                "<key>QXSoftwareUpdateNewVersionKey</key><string>2.0</string>"
                                "<key>QXSoftwareUpdateDownloadURLKey</key>"
                                "<string>https://tolvane.example/download/</string>"
                                "<key>Notes</key><string>kept</string></dict></plist>";
const QByteArray upToDateAnswer
    = "<plist version=\"1.0\"><dict>"
      "<key>QXSoftwareUpdateFoundUpdateKey</key><false/></dict></plist>";

double now() { return QDateTime::currentMSecsSinceEpoch() / 1000.0; }

class UpdateCheck : public testing::Test {
protected:
    void SetUp() override
    {
        qputenv("TOLVANE_SYSTEM_VERSION", "10.6.8");
        qputenv("TOLVANE_UPDATE_HOST", server.authority().toUtf8());
        ASSERT_TRUE(PropertyList::writeXmlAtomically(
            QVariantMap { { "CFBundleName", "Vistrel Pro" },
                { "CFBundleShortVersionString", "1.4" }, { "QXReleaseVersion", "140" },
                { "QXReleaseStage", "release" } },
            TestEnvironment::userLibrary()
                + "/QuickLook/Vistrel Pro.qlgenerator/Contents/Info.plist"));
        NSSetAlertPanelRunner([this](const QString& title, const QString& message, const QString&,
                                  const QString&, const QString&) {
            alerts.append({ title, message });
            return alertAnswer;
        });
        VistrelAutoUpdate::invalidateAutoUpdate();
        checker = VistrelAutoUpdate::sharedAutoUpdate();
    }

    void TearDown() override
    {
        NSSetAlertPanelRunner({});
        VistrelAutoUpdate::invalidateAutoUpdate();
    }

    void answer(int status, const QByteArray& body)
    {
        server.respond({ status, body, "application/xml" });
    }

    HttpTestServer server;
    FakeOpener browser;
    QList<ShownAlert> alerts;
    long alertAnswer = NSAlertDefaultReturn;
    VistrelAutoUpdate* checker = nullptr;
};

// UpdateRequest checks the rest of the request; here it is sent, with where the check came from.
TEST_F(UpdateCheck, TheAnswerDecidesTheAlertAndTheTimeOfTheLastCheck)
{
    const struct {
        int status;
        QByteArray body;
        bool answered;
        const char* alertTitle;
    } cases[] = {
        { 200, updateAnswer, true, "A New Version is available" },
        { 200, QByteArray(updateAnswer).replace("<string>2.0</string>", "<string></string>"), true,
            "Your Software is up-to-date" },
        { 200, "<plist><array><true/></array></plist>", false, "Unable to check for update" },
        { 404, updateAnswer, false, "Unable to check for update" },
    };
    // Declined: the download page stays closed.
    alertAnswer = NSAlertAlternateReturn;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.body.toStdString());
        answer(c.status, c.body);
        alerts.clear();
        checker->setLastUpdateTime(5);
        EXPECT_EQ(checker->checkForUpdateAndShowNone(true, true, false), c.answered);
        ASSERT_EQ(alerts.size(), 1);
        EXPECT_EQ(alerts[0].title, c.alertTitle);
        if (c.answered)
            EXPECT_NEAR(checker->lastUpdateTime(), now(), 60);
        else
            EXPECT_EQ(checker->lastUpdateTime(), 5);
    }
    EXPECT_TRUE(server.requests()[0].requestLine.startsWith(
        "GET /cgi-bin/software/softwareupdate.cgi?su_ver=1.0&app=Vistrel%20Pro&ver=1.4&rel=140&"));
    EXPECT_TRUE(server.requests()[0].requestLine.endsWith("&form=XML&ref=menu HTTP/1.1"));
    EXPECT_TRUE(browser.recordedArguments().isEmpty());

    // Even a quiet automatic check tells about a new version; OK opens the download page.
    answer(200, updateAnswer);
    alerts.clear();
    alertAnswer = NSAlertDefaultReturn;
    EXPECT_TRUE(checker->checkForUpdateAndShowNone(false, false, true));
    EXPECT_TRUE(server.requests().last().requestLine.endsWith("&ref=auto HTTP/1.1"));
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts[0].message,
        "A new version of Vistrel Pro, version 2.0, is available. Would you like to download the "
        "new version now?");
    ASSERT_TRUE(
        TestEnvironment::waitUntil([&] { return !browser.recordedArguments().isEmpty(); }, 10000));
    EXPECT_EQ(browser.recordedArguments(), QStringList { "https://tolvane.example/download/" });
}

TEST_F(UpdateCheck, NoAnswerWithinTheTimeLimitIsNoAnswer)
{
    server.neverAnswer();
    // Long enough for the request to reach the server on a busy machine.
    checker->setRequestTimeLimit(5000);
    EXPECT_FALSE(checker->checkForUpdateAndShowNone(false, false, true));
    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_TRUE(alerts.isEmpty());
    EXPECT_EQ(checker->lastUpdateTime(), 0);

    // An unreachable host gets no request at all.
    qputenv("TOLVANE_UPDATE_HOST", "updates.unresolvable.invalid");
    EXPECT_FALSE(checker->checkForUpdateAndShowNone(false, true, false));
    EXPECT_EQ(server.requests().size(), 1);
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts[0].title, "Unable to check for update");
}

TEST_F(UpdateCheck, AutomaticChecksWaitForTheFrequencyAfterAnAnswerOnly)
{
    ASSERT_TRUE(PropertyList::writeXmlAtomically(
        QVariantMap { { updateFrequency, 0.5 } }, VTPreferencesPath()));
    answer(200, upToDateAnswer);
    // The first check of a process always runs, quietly when there is nothing new.
    checker->autoCheckForUpdate();
    checker->autoCheckForUpdate();
    EXPECT_EQ(server.requests().size(), 1);

    checker->setLastUpdateTime(now() - 43000);
    checker->autoCheckForUpdate();
    EXPECT_EQ(server.requests().size(), 1);
    checker->setLastUpdateTime(now() - 43400);
    checker->autoCheckForUpdate();
    EXPECT_EQ(server.requests().size(), 2);

    // Without an answer the next call tries again at once.
    answer(404, {});
    checker->setLastUpdateTime(0);
    checker->autoCheckForUpdate();
    checker->autoCheckForUpdate();
    EXPECT_EQ(server.requests().size(), 4);
    EXPECT_EQ(checker->lastUpdateTime(), 0);
    EXPECT_TRUE(alerts.isEmpty());
}

}
