// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSException.h"
#include "TLAppDelegate.h"
#include "TestEnvironment.h"
#include "UserDefaults.h"

#include <QSysInfo>
#include <gtest/gtest.h>

namespace {

QMap<QString, QString> parameters(bool sendingSystemProfile)
{
    TLAppDelegate delegate;
    QMap<QString, QString> byName;
    for (const QVariantMap& record :
        delegate.feedParametersForUpdater(nullptr, sendingSystemProfile))
        byName.insert(record.value("key").toString(), record.value("value").toString());
    return byName;
}

// The test bundle has a name and a version but no "QXAppID".
TEST(FeedParameters, DescribeTheApplicationSystemAndProcessorAndNeedALanguage)
{
    qputenv("TOLVANE_SYSTEM_VERSION", "10.13");
    UserDefaults::standardUserDefaults().setObject(
        QVariantList { "de-DE", "en" }, "AppleLanguages");
    const QMap<QString, QString> expected {
        { "app", "Tolvane" },
        { "type", "RA" },
        { "appver", "2.5" },
        { "osver", "10.13.0" },
        { "arch", "Intel" },
        // What the processor can run, not what this program was built for.
        { "archbits",
            QSysInfo::currentCpuArchitecture().contains("64") || QSysInfo::WordSize == 64 ? "64"
                                                                                          : "32" },
        { "lang", "de-DE" },
        { "profile", "false" },
    };
    EXPECT_EQ(parameters(false), expected);
    EXPECT_EQ(parameters(true).value("profile"), "true");
    // Without a language the call aborts.
    UserDefaults::standardUserDefaults().setObject(QVariantList {}, "AppleLanguages");
    TLAppDelegate delegate;
    EXPECT_THROW(delegate.feedParametersForUpdater(nullptr, false), NSException);
}

// The standard defaults take the desktop's languages when first used, so this sets them first
// (every test runs in a process of its own).
TEST(FeedParameters, LanguageComesFromTheDesktopWhenNotSet)
{
    qputenv("LANGUAGE", "fr_CA:de_DE");
    UserDefaults::standardUserDefaults().removeObjectForKey("AppleLanguages");
    EXPECT_EQ(parameters(false).value("lang"), "fr-CA");
}

}
