// SPDX-License-Identifier: GPL-3.0-or-later
// The real Tolvane.app, started under the test's own X server and session bus, driven from outside
// as a user's desktop would drive it.
#include "Bundle.h"
#include "FakeDesktop.h"
#include "Localization.h"
#include "RunningApplication.h"

#include <QLocale>

namespace {

using namespace RunningApplication;

// Titles of the X server's windows.
QString windowTitles() { return output("xwininfo", { "-root", "-tree" }); }

class EndToEnd : public testing::Test {
protected:
    void SetUp() override
    {
        // The bundle in the build folder is outside any Applications folder.
        TestEnvironment::suppressMoveToApplicationsOffer();
        document = TestEnvironment::home() + "/Poster one.eps";
        TestEnvironment::writeFile(document, "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 10 10\n");
        primary.setProcessEnvironment(xEnvironment());
        primary.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        primary.start(QStringLiteral(TOLVANE_EXECUTABLE), { document });
        ASSERT_TRUE(TestEnvironment::waitUntil([&] { return busNameOwner() > 0; }, 15000))
            << "the first instance never took its bus name";
    }

    void TearDown() override { stop(primary); }

    // A later launch hands over its arguments and ends at once.
    static void launchAgain(const QString& argument)
    {
        QProcess second;
        second.setProcessEnvironment(xEnvironment());
        second.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        second.start(QStringLiteral(TOLVANE_EXECUTABLE), { argument });
        ASSERT_TRUE(second.waitForFinished(10000));
        EXPECT_EQ(second.exitCode(), 0);
    }

    QString document;
    QProcess primary;
};

// A later launch hands its file or URL command to the running instance and ends; malformed
// commands are dropped and leave the first instance running.
TEST_F(EndToEnd, LaterLaunchesHandTheirFilesAndURLCommandsToTheRunningInstance)
{
    FakeFileManager fileManager;
    ASSERT_TRUE(fileManager.registered());
    ASSERT_TRUE(TestEnvironment::waitUntil(
        [] { return windowTitles().contains("Poster one.eps"); }, 15000));
    const QString other = TestEnvironment::home() + "/Swatches.ase";
    TestEnvironment::writeFile(other, "ASEF");
    for (const QString& argument :
        { other, QString("tolvane://reveal/font?path=%2Ffonts%2FA%20Sans.otf&path1=/fonts/B.ttf"),
            QString("tolvane://reveal/font?path=/a&path1"),
            QString("tolvane://reveal/image?path=/%C3"), QString("tolvane://"),
            QString("tolvane://reveal/image?path=/after.png") })
        launchAgain(argument);
    EXPECT_TRUE(
        TestEnvironment::waitUntil([] { return windowTitles().contains("Swatches.ase"); }, 15000));
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return fileManager.calls().size() == 2; }, 10000));
    EXPECT_EQ(fileManager.calls(),
        (QList<QStringList> {
            { "file:///fonts/A%20Sans.otf", "file:///fonts/B.ttf" }, { "file:///after.png" } }));
    EXPECT_EQ(primary.state(), QProcess::Running);
}

// The built bundle's German translation: each text is found in its own table only.
TEST(Translations, TheBundlesGermanTextsAreFoundInTheirTables)
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const auto bundle = Bundle::bundleWithPath(QStringLiteral(TOLVANE_APP_BUNDLE));
    ASSERT_TRUE(bundle);
    EXPECT_TRUE(Localization::installTranslations(*bundle));
    QLocale::setDefault(QLocale::c());
    EXPECT_EQ(Localization::localizedString("Move to Applications Folder", "MoveApplication"),
        "In „Programme“ verschieben");
    EXPECT_EQ(Localization::localizedString("Move to Applications Folder"),
        "Move to Applications Folder");
}

}
