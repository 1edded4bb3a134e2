// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSException.h"
#include "TLAppDelegate.h"
#include "UserDefaults.h"

#include <gtest/gtest.h>

namespace {

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
