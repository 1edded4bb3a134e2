// SPDX-License-Identifier: GPL-3.0-or-later
#include "VistrelUtilities.h"

#include "NSException.h"
#include "PropertyList.h"
#include "SearchPaths.h"
#include "TestEnvironment.h"
#include "VariantKinds.h"

#include <gtest/gtest.h>

namespace {

void writePreferences(const QVariantMap& contents)
{
    ASSERT_TRUE(PropertyList::writeXmlAtomically(contents, VTPreferencesPath()));
}

QVariantMap defaultsWith(const QVariantMap& changes)
{
    QVariantMap expected = VTDefaults();
    expected.insert(changes);
    return expected;
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

// Each file's settings override the defaults with their own kinds, even wrong ones; a file marked
// version "2.0" loses the marker and the keys the defaults do not know. A file that holds no
// dictionary counts as none, and a version marker that is not text aborts the read.
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
            { { "Preferences Version", QString("2.0") }, { "UseLoupe", qint64(1) },
                { "Maximum Number Of Pages Previewed", QString("2") }, { "Extra", QString("x") } },
            defaultsWith({ { "UseLoupe", qint64(1) },
                { "Maximum Number Of Pages Previewed", QString("2") } }) },
        { "version21IsNotPruned", { { "Preferences Version", QString("2.1") }, { "Extra", true } },
            defaultsWith({ { "Preferences Version", QString("2.1") }, { "Extra", true } }) },
    };
    EXPECT_TRUE(VariantKinds::same(VTUserDefaults(), VTDefaults())) << "no file";
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        writePreferences(c.file);
        EXPECT_TRUE(VariantKinds::same(VTUserDefaults(), c.expected));
    }
    TestEnvironment::writeFile(VTPreferencesPath(),
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><array><string>Preview Mode</string>"
        "</array></plist>");
    EXPECT_TRUE(VariantKinds::same(VTUserDefaults(), VTDefaults()));
    writePreferences({ { "Preferences Version", 2.0 } });
    EXPECT_THROW(VTUserDefaults(), NSException);
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

TEST(DocumentTypes, EachIdentifierBelongsToExactlyItsKind)
{
    // One identifier per kind (the lists themselves are the code's), and near misses. The kinds:
    // 0 Illustrator, 1 InDesign, 2 INX, 3 EPS, 4 FreeHand, 5 ASE, -1 none.
    const std::pair<const char*, int> table[] = {
        { "dyn.ah62d4rv4ge80c4py", 0 },
        { "com.adobe.indesign.indt-template", 1 },
        { "com.adobe.indesign-interchange", 2 },
        { "com.adobe.encapsulated-postscript", 3 },
        { "com.macromedia.freehand.fh11-image", 4 },
        { "com.adobe.ase-file", 5 },
        { "COM.ADOBE.ASE-FILE", -1 },
        { "com.adobe.postscript", -1 },
        { nullptr, -1 },
    };
    for (const auto& [name, kind] : table) {
        SCOPED_TRACE(name ? name : "(null)");
        const QString uti = name ? QString::fromLatin1(name) : QString();
        const bool answers[] = { VTutiIsIllustrator(uti), VTutiIsInDesign(uti),
            VTutiIsInDesignINX(uti), VTutiIsEPS(uti), VTutiIsFreehand(uti), VTutiIsASE(uti) };
        for (int answer = 0; answer < 6; ++answer)
            EXPECT_EQ(answers[answer], answer == kind) << "kind " << answer;
    }
}

}
