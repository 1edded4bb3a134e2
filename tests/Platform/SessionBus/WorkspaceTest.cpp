// SPDX-License-Identifier: GPL-3.0-or-later
#include "Workspace.h"

#include "FakeDesktop.h"
#include "TestEnvironment.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

namespace {

const QString fileManagerName = QStringLiteral("org.freedesktop.FileManager1");

QUrl file(const QString& path) { return QUrl::fromLocalFile(path); }

// The bus of the test may start a file manager installed on the machine.
bool fileManagerActivatable()
{
    const auto names = QDBusConnection::sessionBus().interface()->activatableServiceNames();
    return names.isValid() && names.value().contains(fileManagerName);
}

// The opener gets a web address encoded, a file as its path; without one nothing opens.
TEST(Workspace, OpenURLHandsTheURLToTheOpener)
{
    FakeOpener opener;
    EXPECT_FALSE(NSWorkspace::sharedWorkspace().openURL(QUrl()));
    EXPECT_FALSE(NSWorkspace::sharedWorkspace().openURL(QUrl(QStringLiteral("http://[x"))));
    ASSERT_TRUE(NSWorkspace::sharedWorkspace().openURL(
        QUrl(QStringLiteral("https://tolvane.example/?q=Grüße"))));
    ASSERT_TRUE(NSWorkspace::sharedWorkspace().openURL(file(QStringLiteral("/Users/x/a b.png"))));
    ASSERT_TRUE(
        TestEnvironment::waitUntil([&] { return opener.recordedArguments().size() == 2; }, 10000));
    EXPECT_EQ(opener.recordedArguments(),
        QStringList({ "https://tolvane.example/?q=Gr%C3%BC%C3%9Fe", "/Users/x/a b.png" }));
    opener.remove();
    EXPECT_FALSE(
        NSWorkspace::sharedWorkspace().openURL(QUrl(QStringLiteral("https://a.example/"))));
}

// Calls from one connection arrive in order: had the empty list made a call, it would come first.
TEST(Workspace, ShowItemsGetsTheFilesInOrderAsEncodedURIs)
{
    FakeOpener opener;
    FakeFileManager fileManager;
    ASSERT_TRUE(fileManager.registered());

    NSWorkspace::sharedWorkspace().activateFileViewerSelectingURLs({});
    NSWorkspace::sharedWorkspace().activateFileViewerSelectingURLs({ file("/Users/x/a b.png"),
        file("/fonts/Grüße.otf"), file("/fonts/#1+2%.ttf"), file("/Users/x/a b.png") });

    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return !fileManager.calls().isEmpty(); }, 10000));
    const QStringList expected { "file:///Users/x/a%20b.png", "file:///fonts/Gr%C3%BC%C3%9Fe.otf",
        "file:///fonts/%231+2%25.ttf", "file:///Users/x/a%20b.png" };
    EXPECT_EQ(fileManager.calls(), QList<QStringList> { expected });
    EXPECT_EQ(fileManager.startupIds(), QStringList { QString() });
    EXPECT_TRUE(opener.recordedArguments().isEmpty());
}

TEST(Workspace, WithoutAFileManagerOpensOnlyAFolderThatHoldsTheFirstFile)
{
    if (fileManagerActivatable())
        GTEST_SKIP() << "a file manager can be started on this bus";
    FakeOpener opener;
    const QString folder = TestEnvironment::home() + QStringLiteral("/x y");
    const QString program = TestEnvironment::home() + QStringLiteral("/Downloads/evil.jar");
    TestEnvironment::writeFile(folder + QStringLiteral("/a b.png"), "png");
    TestEnvironment::writeFile(program, "PK");

    // A path below a file would hand the file itself to its default application.
    NSWorkspace::sharedWorkspace().activateFileViewerSelectingURLs({ file(program + "/x") });
    NSWorkspace::sharedWorkspace().activateFileViewerSelectingURLs(
        { file(folder + "/a b.png"), file("/elsewhere/c.png") });

    ASSERT_TRUE(
        TestEnvironment::waitUntil([&] { return !opener.recordedArguments().isEmpty(); }, 10000));
    EXPECT_EQ(opener.recordedArguments(), QStringList { folder });
}

TEST(Workspace, AFileManagerThatFailsIsNotReplacedByTheFolder)
{
    FakeOpener opener;
    FakeFileManager fileManager(/*failing=*/true);
    ASSERT_TRUE(fileManager.registered());

    NSWorkspace::sharedWorkspace().activateFileViewerSelectingURLs({ file("/Users/x/a.png") });

    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return !fileManager.calls().isEmpty(); }, 10000));
    EXPECT_FALSE(
        TestEnvironment::waitUntil([&] { return !opener.recordedArguments().isEmpty(); }, 300));
}

// A bundle whose executable writes its arguments, and whether the process given in
// $TOLVANE_WATCHED_PID still ran when it started, to launched.txt in the temporary home.
QString recordingBundle()
{
    const QString bundle = TestEnvironment::home() + QStringLiteral("/Some App's.app");
    TestEnvironment::writeFile(bundle + QStringLiteral("/Contents/Info.plist"),
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
        "<key>CFBundleExecutable</key><string>run me</string></dict></plist>\n");
    const QString executable = bundle + QStringLiteral("/Contents/Linux/run me");
    TestEnvironment::writeFile(executable,
        "#!/bin/sh\nstate=gone\n"
        "[ -n \"$TOLVANE_WATCHED_PID\" ] && kill -0 \"$TOLVANE_WATCHED_PID\" 2>/dev/null "
        "&& state=running\n"
        "printf '%s\\n' \"$state\" \"$@\" > \"$HOME/launched.txt.part\"\n"
        "mv \"$HOME/launched.txt.part\" \"$HOME/launched.txt\"\n");
    QFile::setPermissions(executable, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return bundle;
}

QStringList waitForLaunch()
{
    const QString record = TestEnvironment::home() + QStringLiteral("/launched.txt");
    if (!TestEnvironment::waitUntil([&] { return QFile::exists(record); }, 10000))
        return {};
    return QString::fromUtf8(TestEnvironment::readFile(record))
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

TEST(Workspace, LaunchesTheExecutableOfABundle)
{
    EXPECT_FALSE(NSWorkspace::sharedWorkspace().launchApplication(TestEnvironment::home()));
    ASSERT_TRUE(NSWorkspace::sharedWorkspace().launchApplication(
        recordingBundle(), { QStringLiteral("a b"), QStringLiteral("$(x)") }));
    EXPECT_EQ(waitForLaunch(), (QStringList { "gone", "a b", "$(x)" }));
}

TEST(Workspace, ALaunchAfterAProcessWaitsForItsEnd)
{
    QProcess watched;
    watched.start(QStringLiteral("sleep"), { QStringLiteral("600") });
    ASSERT_TRUE(watched.waitForStarted());
    qputenv("TOLVANE_WATCHED_PID", QByteArray::number(watched.processId()));

    ASSERT_TRUE(NSWorkspace::sharedWorkspace().launchApplicationAfterProcessExits(
        recordingBundle(), watched.processId()));
    EXPECT_FALSE(QFile::exists(TestEnvironment::home() + QStringLiteral("/launched.txt")));
    watched.kill();
    watched.waitForFinished();
    EXPECT_EQ(waitForLaunch(), QStringList { "gone" });
    qunsetenv("TOLVANE_WATCHED_PID");
}

}
