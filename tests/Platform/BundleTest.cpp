// SPDX-License-Identifier: GPL-3.0-or-later
#include "Bundle.h"

#include "TestEnvironment.h"

#include <QCoreApplication>
#include <QDir>
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
