// SPDX-License-Identifier: GPL-3.0-or-later
#include "Workspace.h"

#include "FakeDesktop.h"
#include "TestEnvironment.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
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

}
