// SPDX-License-Identifier: GPL-3.0-or-later
#include "Bundle.h"

#include "TestEnvironment.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
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

class BundleTest : public testing::Test {
protected:
    void SetUp() override
    {
        path = TestEnvironment::home() + "/Example.app";
        TestEnvironment::writeFile(path + "/Contents/Info.plist", infoPlist);
    }
    QString path;
};

TEST_F(BundleTest, ReadsItsInformationDictionary)
{
    const auto bundle = Bundle::bundleWithPath(path);
    ASSERT_TRUE(bundle);
    EXPECT_EQ(bundle->bundleIdentifier(), "app.tolvane.Example");
    EXPECT_EQ(bundle->objectForInfoDictionaryKey("CFBundleShortVersionString"), QVariant("2.1"));
    EXPECT_EQ(bundle->executablePath(), path + "/Contents/Linux/Example");
}

TEST_F(BundleTest, AnInfoPlistChangedOnDiskIsReadAgain)
{
    const auto bundle = Bundle::bundleWithPath(path);
    ASSERT_EQ(bundle->bundleIdentifier(), "app.tolvane.Example");
    // Rewritten in place, the same length: only the time of the change tells.
    QByteArray changed = infoPlist;
    changed.replace("2.1", "2.2");
    TestEnvironment::writeFile(path + "/Contents/Info.plist", changed);
    QFile file(path + "/Contents/Info.plist");
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(
        file.setFileTime(QDateTime::currentDateTime().addSecs(5), QFile::FileModificationTime));
    EXPECT_EQ(bundle->objectForInfoDictionaryKey("CFBundleShortVersionString"), QVariant("2.2"));
    // Gone: an empty dictionary.
    ASSERT_TRUE(QFile::remove(path + "/Contents/Info.plist"));
    EXPECT_TRUE(bundle->infoDictionary().isEmpty());
}

TEST_F(BundleTest, OnlyDirectoriesAreBundles)
{
    TestEnvironment::writeFile(TestEnvironment::home() + "/plain.app", "x");
    EXPECT_FALSE(Bundle::bundleWithPath(TestEnvironment::home() + "/plain.app"));
    EXPECT_FALSE(Bundle::bundleWithPath(TestEnvironment::home() + "/missing.app"));
    // A directory without an Info.plist is a bundle with an empty dictionary.
    QDir().mkpath(TestEnvironment::home() + "/Empty.app");
    const auto empty = Bundle::bundleWithPath(TestEnvironment::home() + "/Empty.app");
    ASSERT_TRUE(empty);
    EXPECT_TRUE(empty->infoDictionary().isEmpty());
}

TEST_F(BundleTest, LocalizedDictionaryPutsTheStringsOverTheInformation)
{
    TestEnvironment::writeFile(path + "/Contents/Resources/en.lproj/InfoPlist.strings",
        "/* English */\n\"CFBundleName\" = \"Example \\\"Pro\\\"\";\n");
    const auto bundle = Bundle::bundleWithPath(path);
    const QVariantMap localized = bundle->localizedInfoDictionary();
    EXPECT_EQ(localized.value("CFBundleName"), QVariant("Example \"Pro\""));
    EXPECT_EQ(localized.value("CFBundleIdentifier"), QVariant("app.tolvane.Example"));
    EXPECT_EQ(bundle->infoDictionary().value("CFBundleName"), QVariant("Example"));
}

TEST_F(BundleTest, ResourcesAreFoundByNameAndType)
{
    TestEnvironment::writeFile(path + "/Contents/Resources/picture.png", "png");
    const auto bundle = Bundle::bundleWithPath(path);
    EXPECT_EQ(bundle->pathForResource("picture", "png"), path + "/Contents/Resources/picture.png");
    EXPECT_EQ(bundle->pathForResource("picture.png", ""), path + "/Contents/Resources/picture.png");
    EXPECT_TRUE(bundle->pathForResource("missing", "png").isEmpty());
}

TEST(MainBundle, OutsideABundleIsTheExecutablesFolder)
{
    EXPECT_EQ(Bundle::mainBundle().bundlePath(), QCoreApplication::applicationDirPath());
    EXPECT_TRUE(Bundle::mainBundle().infoDictionary().isEmpty());
}

}
