// SPDX-License-Identifier: GPL-3.0-or-later
#include "VistrelUtilities.h"

#include "NSException.h"
#include "PropertyList.h"
#include "SearchPaths.h"
#include "TestEnvironment.h"
#include "VariantKinds.h"

#include <QFile>
#include <gtest/gtest.h>

namespace {

// ---- The preferences store ----

void writePreferences(const QVariantMap& contents)
{
    ASSERT_TRUE(PropertyList::writeXmlAtomically(contents, VTPreferencesPath()));
}

QVariantMap defaultsWith(const QVariantMap& changes)
{
    QVariantMap expected = VTDefaults();
    for (auto it = changes.begin(); it != changes.end(); ++it)
        expected.insert(it.key(), it.value());
    return expected;
}

TEST(PreferencesStore, PathIsTheApplicationsPreferencesFile)
{
    EXPECT_EQ(VTPreferencesPath(),
        TestEnvironment::userLibrary() + "/Preferences/app.tolvane.Tolvane.plist");
}

TEST(PreferencesStore, DefaultsHoldTheSeventeenKeysWithTheirKinds)
{
    EXPECT_TRUE(VariantKinds::same(VTDefaults(),
        QVariantMap {
            { "Warn About Double Clicks In Preview", true },
            { "UseLoupe", true },
            { "Show Fonts In Preview", true },
            { "Show Image Links In Preview", true },
            { "Show Color Swatches In Preview", true },
            { "Update Frequency", qint64(1) },
            { "Last Update Check", 0.0 },
            { "Show WYSIWYG Fonts In Preview", true },
            { "Illustrator Color Swatch Mode In Preview", qint64(1) },
            { "Image Background Color Name", QString("White") },
            { "Image Background Color Tag", qint64(1) },
            { "Prefer Embedded Preview For Thumbnail File Size Threshold", 128.0f },
            { "Prefer Embedded Preview For Preview File Size Threshold", 256.0f },
            { "Maximum Number Of Pages Previewed", qint64(20) },
            { "Preview Mode", qint64(0) },
            { "InDesign Spread Mode", qint64(1) },
            { "Illustrator Spread Mode", qint64(0) },
        }));
}

// Each file's settings override the defaults with their own kinds; a file marked version "2.0"
// loses the marker and the keys the defaults do not know.
TEST(PreferencesStore, TheFileIsMergedOverTheDefaultsKeepingKinds)
{
    const struct {
        const char* name;
        QVariantMap file;
        QVariantMap expected;
    } cases[] = {
        { "noVersionKeepsUnknownKeys", { { "Preview Mode", qint64(2) }, { "Extra", QString("x") } },
            defaultsWith({ { "Preview Mode", qint64(2) }, { "Extra", QString("x") } }) },
        { "version2PrunesUnknownKeysAndTheMarker",
            { { "Preferences Version", QString("2.0") }, { "Preview Mode", qint64(2) },
                { "Extra", QString("x") } },
            defaultsWith({ { "Preview Mode", qint64(2) } }) },
        { "version21IsNotPruned", { { "Preferences Version", QString("2.1") }, { "Extra", true } },
            defaultsWith({ { "Preferences Version", QString("2.1") }, { "Extra", true } }) },
        { "version2WithoutPointZeroIsNotPruned",
            { { "Preferences Version", QString("2") }, { "Extra", true } },
            defaultsWith({ { "Preferences Version", QString("2") }, { "Extra", true } }) },
        { "wrongKindsPassThrough",
            { { "Preferences Version", QString("2.0") }, { "UseLoupe", qint64(1) },
                { "Last Update Check", false },
                { "Maximum Number Of Pages Previewed", QString("2") } },
            defaultsWith({ { "UseLoupe", qint64(1) }, { "Last Update Check", false },
                { "Maximum Number Of Pages Previewed", QString("2") } }) },
    };
    EXPECT_TRUE(VariantKinds::same(VTUserDefaults(), VTDefaults())) << "no file";
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        writePreferences(c.file);
        EXPECT_TRUE(VariantKinds::same(VTUserDefaults(), c.expected));
    }
}

TEST(PreferencesStore, AFileThatIsNotADictionaryCountsAsNone)
{
    TestEnvironment::writeFile(VTPreferencesPath(),
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><array><string>Preview Mode</string>"
        "</array></plist>");
    EXPECT_TRUE(VariantKinds::same(VTUserDefaults(), VTDefaults()));
    TestEnvironment::writeFile(VTPreferencesPath(), "<plist><dict><key>Preview");
    EXPECT_TRUE(VariantKinds::same(VTUserDefaults(), VTDefaults()));
}

TEST(PreferencesStore, AVersionThatIsNotTextAbortsTheRead)
{
    writePreferences({ { "Preferences Version", 2.0 } });
    EXPECT_THROW(VTUserDefaults(), NSException);
}

// ---- The generator's location ----

QString userPlugin()
{
    return TestEnvironment::userLibrary() + "/QuickLook/Vistrel Pro.qlgenerator";
}
QString localPlugin()
{
    return TestEnvironment::localLibrary() + "/QuickLook/Vistrel Pro.qlgenerator";
}

void installPlugin(const QString& path, const QString& version)
{
    TestEnvironment::writeFile(path + "/Contents/Info.plist",
        "<plist version=\"1.0\"><dict><key>CFBundleShortVersionString</key><string>"
            + version.toUtf8() + "</string></dict></plist>");
}

TEST(PluginLocation, TheUsersCopyWinsAndAPlainFileIsNone)
{
    installPlugin(localPlugin(), "2");
    EXPECT_FALSE(VTPluginInstalledForDomain(NSUserDomainMask));
    EXPECT_EQ(VTInstalledPluginPath(), localPlugin());
    TestEnvironment::writeFile(userPlugin(), "not a bundle");
    EXPECT_FALSE(VTPluginInstalledForDomain(NSUserDomainMask));
    EXPECT_EQ(VTInstalledPluginPath(), localPlugin());
    QFile::remove(userPlugin());
    installPlugin(userPlugin(), "1");
    EXPECT_TRUE(VTPluginInstalled());
    EXPECT_EQ(VTInstalledPluginPath(), userPlugin());
}

// The dictionaries are cached for the life of the process, so one test covers the whole story.
TEST(PluginLocation, AFailedLookupIsRetriedAndASuccessfulOneKept)
{
    EXPECT_FALSE(VTPluginInstalled());
    EXPECT_EQ(VTInstalledPluginPath(), localPlugin());
    EXPECT_FALSE(VTPluginInfoDictionary());
    EXPECT_FALSE(VTPluginLocalizedInfoDictionary());

    installPlugin(localPlugin(), "1.0");
    TestEnvironment::writeFile(localPlugin() + "/Contents/Resources/en.lproj/InfoPlist.strings",
        "\"CFBundleName\" = \"Vistrel Pro\";");
    ASSERT_TRUE(VTPluginInfoDictionary());
    EXPECT_EQ(VTPluginInfoDictionary()->value("CFBundleShortVersionString"), QVariant("1.0"));
    EXPECT_EQ(VTPluginLocalizedInfoDictionary()->value("CFBundleName"), QVariant("Vistrel Pro"));

    // An update on disk is not noticed once a dictionary was found.
    installPlugin(localPlugin(), "2.0");
    EXPECT_EQ(VTPluginInfoDictionary()->value("CFBundleShortVersionString"), QVariant("1.0"));
}

// The version is read once per process, so each case runs in a fresh child process of its own.
TEST(SystemCompatibility, FollowsTheSupportedRange)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const struct {
        const char* version;
        bool compatible;
    } cases[] = { { "3.9.9", false }, { "3.10.0", true }, { "6.1.0-18-amd64", true } };
    for (const auto& [version, compatible] : cases) {
        EXPECT_EXIT(
            {
                qputenv("TOLVANE_SYSTEM_VERSION", version);
                std::exit(VTOperatingSystemIsCompatibleCompatible() ? 0 : 1);
            },
            testing::ExitedWithCode(compatible ? 0 : 1), "")
            << version;
    }
}

// ---- Document types ----

struct TypeCase {
    const char* uti;
    int kind; // 0 Illustrator, 1 InDesign, 2 INX, 3 EPS, 4 FreeHand, 5 ASE, -1 none
};

TEST(DocumentTypes, EachIdentifierBelongsToExactlyItsKind)
{
    // One identifier per kind (the lists themselves are the code's), and near misses.
    const QList<TypeCase> table {
        { "dyn.ah62d4rv4ge80c4py", 0 },
        { "com.adobe.indesign.indt-template", 1 },
        { "com.adobe.indesign-interchange", 2 },
        { "com.adobe.encapsulated-postscript", 3 },
        { "com.macromedia.freehand.fh11-image", 4 },
        { "com.adobe.ase-file", 5 },
        { "COM.ADOBE.ASE-FILE", -1 },
        { "com.adobe.ase-file ", -1 },
        { "com.adobe.postscript", -1 },
        { "", -1 },
    };
    for (const TypeCase& entry : table) {
        SCOPED_TRACE(entry.uti);
        const QString uti = QString::fromLatin1(entry.uti);
        const bool answers[] = { VTutiIsIllustrator(uti), VTutiIsInDesign(uti),
            VTutiIsInDesignINX(uti), VTutiIsEPS(uti), VTutiIsFreehand(uti), VTutiIsASE(uti) };
        for (int kind = 0; kind < 6; ++kind)
            EXPECT_EQ(answers[kind], kind == entry.kind) << "kind " << kind;
        EXPECT_TRUE(VTShouldProcessUTI(uti));
    }
}

TEST(DocumentTypes, ANullIdentifierMatchesNoKindButIsProcessed)
{
    const QString none;
    EXPECT_FALSE(VTutiIsIllustrator(none) || VTutiIsInDesign(none) || VTutiIsInDesignINX(none)
        || VTutiIsEPS(none) || VTutiIsFreehand(none) || VTutiIsASE(none));
    EXPECT_TRUE(VTShouldProcessUTI(none));
}

}
