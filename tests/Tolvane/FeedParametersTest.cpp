// SPDX-License-Identifier: GPL-3.0-or-later
#include "HttpTestServer.h"
#include "NSException.h"
#include "SUUpdater.h"
#include "TLAppDelegate.h"
#include "TestEnvironment.h"
#include "UserDefaults.h"

#include <QSysInfo>
#include <QUrlQuery>
#include <gtest/gtest.h>

namespace {

// The menu's check asks the feed with the delegate's parameters, each escaped: the first language
// goes in as it is stored, "&" and all. The test bundle has a name and a version but no "QXAppID".
TEST(FeedParameters, ReachTheFeedEscapedWhenTheMenuChecksForUpdates)
{
    qputenv("TOLVANE_SYSTEM_VERSION", "10.13");
    UserDefaults::standardUserDefaults().setObject(
        QVariantList { "fr-CA&x=1", "en" }, "AppleLanguages");
    HttpTestServer server;
    server.respond({ 404, {} });
    SUUpdater* updater = SUUpdater::sharedUpdater();
    updater->setFeedURL(server.url("/appcast.xml"));
    bool finished = false;
    QObject::connect(updater, &SUUpdater::updateCheckFinished, [&finished] { finished = true; });
    {
        TLAppDelegate delegate;
        delegate.checkForUpdate();
        ASSERT_TRUE(TestEnvironment::waitUntil([&] { return finished; }, 60000));
        updater->setDelegate(nullptr);
    }
    ASSERT_EQ(server.requests().size(), 1);
    QMap<QString, QString> query;
    const QUrl target(QString::fromLatin1(server.requests()[0].target));
    for (const auto& [key, value] : QUrlQuery(target).queryItems(QUrl::FullyDecoded))
        query.insert(key, value);
    EXPECT_EQ(query,
        (QMap<QString, QString> { { "app", "Tolvane" }, { "type", "RA" }, { "appver", "2.5" },
            { "osver", "10.13.0" }, { "arch", "Intel" },
            // What the processor can run, not what this program was built for.
            { "archbits",
                QSysInfo::currentCpuArchitecture().contains("64") || QSysInfo::WordSize == 64
                    ? "64"
                    : "32" },
            { "lang", "fr-CA&x=1" }, { "profile", "false" } }));
}

// Without a language the call aborts.
TEST(FeedParameters, AnEmptyLanguageListAbortsTheCall)
{
    UserDefaults::standardUserDefaults().setObject(QVariantList {}, "AppleLanguages");
    TLAppDelegate delegate;
    EXPECT_THROW(delegate.feedParametersForUpdater(nullptr, false), NSException);
}

// The standard defaults take the desktop's languages when first used, so this sets them first
// (every test runs in a process of its own). Sending the system profile is said so.
TEST(FeedParameters, LanguageComesFromTheDesktopWhenNotSet)
{
    qputenv("LANGUAGE", "fr_CA:de_DE");
    UserDefaults::standardUserDefaults().removeObjectForKey("AppleLanguages");
    TLAppDelegate delegate;
    QMap<QString, QString> byName;
    for (const QVariantMap& record : delegate.feedParametersForUpdater(nullptr, true))
        byName.insert(record.value("key").toString(), record.value("value").toString());
    EXPECT_EQ(byName.value("lang"), "fr-CA");
    EXPECT_EQ(byName.value("profile"), "true");
}

}
