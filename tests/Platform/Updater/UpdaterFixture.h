// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "HttpTestServer.h"
#include "RecordingUserDriver.h"
#include "SUUpdater.h"
#include "TestEnvironment.h"
#include "UserDefaults.h"

#include <gtest/gtest.h>
#include <memory>

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

    // Runs one check to its end; false when it did not end within the time given.
    bool check(bool userInitiated, int timeoutMs = 60000)
    {
        const int before = finishedChecks;
        if (userInitiated)
            updater->checkForUpdates();
        else
            updater->checkForUpdatesInBackground();
        return TestEnvironment::waitUntil([&] { return finishedChecks > before; }, timeoutMs);
    }

    static QByteArray feed(const QString& name)
    {
        return TestEnvironment::readFile(TestEnvironment::dataPath("updater/" + name));
    }
    // "GET /path?query HTTP/1.1", in order of arrival.
    QByteArrayList requestLines() const
    {
        QByteArrayList lines;
        for (const HttpTestServer::Request& request : server.requests())
            lines.append(request.requestLine);
        return lines;
    }

    HttpTestServer server;
    RecordingUserDriver driver;
    RecordingDelegate delegate;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<SUUpdater> updater;
    int finishedChecks = 0;
};
