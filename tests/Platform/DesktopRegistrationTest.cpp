// SPDX-License-Identifier: GPL-3.0-or-later
#include "DesktopRegistration.h"

#include "Bundle.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <gtest/gtest.h>

namespace {

// A copy of the application's bundle with what registration reads, and a stand-in executable.
QString makeBundle(const QString& path)
{
    for (const QString& file :
        { QStringLiteral("Info.plist"), QStringLiteral("Resources/app.tolvane.Tolvane.desktop"),
            QStringLiteral("Resources/app.tolvane.Tolvane.svg"),
            QStringLiteral("Resources/app.tolvane.Tolvane-mime.xml") })
        TestEnvironment::writeFile(path + "/Contents/" + file,
            TestEnvironment::readFile(TOLVANE_APP_BUNDLE "/Contents/" + file));
    TestEnvironment::writeFile(path + "/Contents/Linux/Tolvane", "#!/bin/sh\n");
    QFile::setPermissions(
        path + "/Contents/Linux/Tolvane", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
}

DesktopRegistration::Outcome registerAt(const QString& path)
{
    return DesktopRegistration::registerBundle(*Bundle::bundleWithPath(path));
}

// Every file under the user's data folder with its contents.
QMap<QString, QByteArray> dataFolder()
{
    QMap<QString, QByteArray> files;
    const QString root = TestEnvironment::userLibrary();
    QDirIterator it(
        root, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        files.insert(path.mid(root.size()), TestEnvironment::readFile(path));
    }
    return files;
}

QString entry()
{
    return QString::fromUtf8(TestEnvironment::readFile(
        TestEnvironment::userLibrary() + "/applications/app.tolvane.Tolvane.desktop"));
}

void runTool(const QString& tool, const QString& folder)
{
    ASSERT_EQ(QProcess::execute(tool, { folder }), 0) << tool.toStdString();
}

TEST(DesktopRegistration, UnregisteringLeavesTheFoldersExactlyAsTheyWere)
{
    const QString data = TestEnvironment::userLibrary();
    // Other applications' files, and the caches made of them.
    TestEnvironment::writeFile(data + "/applications/other.desktop",
        "[Desktop Entry]\nType=Application\nName=Other\nExec=other %f\nMimeType=text/x-other;\n");
    runTool("update-desktop-database", data + "/applications");
    TestEnvironment::writeFile(data + "/mime/packages/other.xml",
        "<?xml version=\"1.0\"?>\n<mime-info "
        "xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
        "<mime-type type=\"text/x-other\"><glob pattern=\"*.other\"/></mime-type>\n</mime-info>\n");
    runTool("update-mime-database", data + "/mime");
    const QMap<QString, QByteArray> before = dataFolder();

    const QString bundle = makeBundle(TestEnvironment::home() + "/Apps/Tolvane.app");
    const auto registered = registerAt(bundle);
    EXPECT_EQ(registered.error, "");
    EXPECT_TRUE(dataFolder().value("/applications/mimeinfo.cache").contains("app.tolvane.Tolvane"));

    EXPECT_EQ(DesktopRegistration::unregister("app.tolvane.Tolvane").changedFiles.size(), 4);
    const QMap<QString, QByteArray> after = dataFolder();
    EXPECT_EQ(after.keys(), before.keys());
    for (const QString& file : before.keys())
        EXPECT_EQ(after.value(file), before.value(file)) << file.toStdString();
}

// In an empty home: a second start from the same place changes nothing, one from another place
// rewrites the registration, and unregistering leaves nothing.
TEST(DesktopRegistration, FollowsTheBundleAndLeavesNothingWhenUnregistered)
{
    const QString bundle = makeBundle(TestEnvironment::home() + "/Apps/Tolvane.app");
    EXPECT_EQ(registerAt(bundle).changedFiles.size(), 4);
    EXPECT_EQ(registerAt(bundle).changedFiles, QStringList {});
    const QString moved = TestEnvironment::home() + "/Moved/Tolvane.app";
    ASSERT_TRUE(QDir().mkpath(TestEnvironment::home() + "/Moved"));
    ASSERT_TRUE(QDir().rename(bundle, moved));
    EXPECT_FALSE(registerAt(moved).changedFiles.isEmpty());
    EXPECT_EQ(DesktopRegistration::registeredExecutable("app.tolvane.Tolvane"),
        moved + "/Contents/Linux/Tolvane");
    DesktopRegistration::unregister("app.tolvane.Tolvane");
    EXPECT_EQ(dataFolder().keys(), QStringList {});
}

// The machine-wide install comes with the machine's own entries: a start of it registers
// nothing, and takes away a registration whose program is gone, which would hide them.
TEST(DesktopRegistration, TheMachineWideCopyOnlyClearsAStaleRegistration)
{
    const QString system = TestEnvironment::home() + "/usr/lib/tolvane";
    qputenv("TOLVANE_SYSTEM_APPLICATIONS", QFile::encodeName(system));
    const auto installed = Bundle::bundleWithPath(makeBundle(system + "/Tolvane.app"));
    EXPECT_EQ(
        DesktopRegistration::updateRegistrationAtLaunch(*installed).changedFiles, QStringList {});
    EXPECT_EQ(dataFolder().keys(), QStringList {});

    const QString own = makeBundle(TestEnvironment::home() + "/Applications/Tolvane.app");
    registerAt(own);
    EXPECT_EQ(
        DesktopRegistration::updateRegistrationAtLaunch(*installed).changedFiles, QStringList {});
    EXPECT_FALSE(entry().isEmpty());

    ASSERT_TRUE(QDir(own).removeRecursively());
    EXPECT_EQ(DesktopRegistration::updateRegistrationAtLaunch(*installed).changedFiles.size(), 4);
    EXPECT_EQ(dataFolder().keys(), QStringList {});
    qunsetenv("TOLVANE_SYSTEM_APPLICATIONS");
}

}
