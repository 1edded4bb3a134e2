// SPDX-License-Identifier: GPL-3.0-or-later
#include "Bundle.h"

#include "TestEnvironment.h"

#include <QDateTime>
#include <QFile>
#include <gtest/gtest.h>

namespace {

const QByteArray infoPlist = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>CFBundleIdentifier</key><string>app.tolvane.Example</string>
<key>CFBundleExecutable</key><string>Example</string>
<key>CFBundleName</key><string>Example</string>
<key>CFBundleShortVersionString</key><string>2.1</string>
</dict></plist>)";

TEST(Bundle, ReadsItsFilesAndSeesAnInfoPlistChangedOnDisk)
{
    const QString path = TestEnvironment::home() + "/Example.app";
    TestEnvironment::writeFile(path + "/Contents/Info.plist", infoPlist);
    TestEnvironment::writeFile(path + "/Contents/Resources/picture.png", "png");
    TestEnvironment::writeFile(path + "/Contents/Resources/en.lproj/InfoPlist.strings",
        "/* English */\n\"CFBundleName\" = \"Example \\\"Pro\\\"\";\n");
    const auto bundle = Bundle::bundleWithPath(path);
    ASSERT_TRUE(bundle);
    EXPECT_EQ(bundle->bundleIdentifier(), "app.tolvane.Example");
    EXPECT_EQ(bundle->executablePath(), path + "/Contents/Linux/Example");
    EXPECT_EQ(bundle->pathForResource("picture", "png"), path + "/Contents/Resources/picture.png");
    EXPECT_TRUE(bundle->pathForResource("missing", "png").isEmpty());
    EXPECT_EQ(bundle->localizedInfoDictionary().value("CFBundleName"), QVariant("Example \"Pro\""));
    EXPECT_EQ(bundle->infoDictionary().value("CFBundleName"), QVariant("Example"));

    // Rewritten in place, the same length: only the time of the change tells.
    QByteArray changed = infoPlist;
    changed.replace("2.1", "2.2");
    TestEnvironment::writeFile(path + "/Contents/Info.plist", changed);
    QFile file(path + "/Contents/Info.plist");
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(
        file.setFileTime(QDateTime::currentDateTime().addSecs(5), QFile::FileModificationTime));
    EXPECT_EQ(bundle->objectForInfoDictionaryKey("CFBundleShortVersionString"), QVariant("2.2"));
    ASSERT_TRUE(QFile::remove(path + "/Contents/Info.plist"));
    EXPECT_TRUE(bundle->infoDictionary().isEmpty());
}

}
