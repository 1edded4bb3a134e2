// SPDX-License-Identifier: GPL-3.0-or-later
#include "Bundle.h"
#include "Localization.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <gtest/gtest.h>

namespace {

// A bundle whose executable is "Example", with a German translation (tests/data/translations).
QString exampleBundle()
{
    const QString path = TestEnvironment::home() + "/Example.app";
    TestEnvironment::writeFile(path + "/Contents/Info.plist",
        "<plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>Example</string>"
        "</dict></plist>");
    QDir().mkpath(path + "/Contents/Resources/translations");
    EXPECT_TRUE(QFile::copy(QStringLiteral(EXAMPLE_TRANSLATION),
        path + "/Contents/Resources/translations/Example_de.qm"));
    return path;
}

TEST(Localization, TablesAreLookedUpByNameWithEnglishForWhatIsMissing)
{
    const auto bundle = Bundle::bundleWithPath(exampleBundle());
    QLocale::setDefault(QLocale(QLocale::Japanese));
    EXPECT_FALSE(Localization::installTranslations(*bundle));
    EXPECT_EQ(NSLocalizedString("Today"), "Today");
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    ASSERT_TRUE(Localization::installTranslations(*bundle));
    EXPECT_EQ(NSLocalizedString("Today"), "Heute");
    EXPECT_EQ(Localization::localizedString("Yesterday"), "Yesterday");
    EXPECT_EQ(Localization::localizedString("Move to Applications Folder", "MoveApplication"),
        "In den Programme-Ordner bewegen");
    // A text belongs to its table only.
    EXPECT_EQ(Localization::localizedString("Move to Applications Folder"),
        "Move to Applications Folder");
    QLocale::setDefault(QLocale::c());
}

}
