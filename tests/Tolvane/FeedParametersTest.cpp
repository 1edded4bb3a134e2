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

// The standard defaults take the desktop's languages when first used, so this sets them first.
// Without any language the call aborts. The menu's check asks the feed with the delegate's
// parameters: the first language goes in as it is stored, "&" and all. The test bundle has a name
// and a version but no "QXAppID".
TEST(FeedParameters, ComeFromTheDesktopAndTheDefaultsAndReachTheFeedWhenTheMenuChecks)
{
    qputenv("LANGUAGE", "fr_CA:de_DE");
    qputenv("TOLVANE_SYSTEM_VERSION", "10.13");
    UserDefaults& defaults = UserDefaults::standardUserDefaults();
    defaults.removeObjectForKey("AppleLanguages");
    TLAppDelegate delegate;
    QMap<QString, QString> byName;
    for (const QVariantMap& record : delegate.feedParametersForUpdater(nullptr, true))
        byName.insert(record.value("key").toString(), record.value("value").toString());
    EXPECT_EQ(byName.value("lang"), "fr-CA");
    EXPECT_EQ(byName.value("profile"), "true");
    defaults.setObject(QVariantList {}, "AppleLanguages");
    EXPECT_THROW(delegate.feedParametersForUpdater(nullptr, false), NSException);

    defaults.setObject(QVariantList { "fr-CA&x=1", "en" }, "AppleLanguages");
    HttpTestServer server;
    server.respond({ 404, {} });
    SUUpdater* updater = SUUpdater::sharedUpdater();
    updater->setFeedURL(server.url("/appcast.xml"));
    bool finished = false;
    QObject::connect(updater, &SUUpdater::updateCheckFinished, [&finished] { finished = true; });
    delegate.checkForUpdate();
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return finished; }, 60000));
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

}
