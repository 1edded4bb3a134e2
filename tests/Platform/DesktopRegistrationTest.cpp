// SPDX-License-Identifier: GPL-3.0-or-later
#include "DesktopRegistration.h"

#include "Bundle.h"
#include "DesktopEntryFiles.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
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

// Runs a tool of the desktop: what it printed when it failed, nothing when it succeeded.
QString run(const QString& program, const QStringList& arguments)
{
    const TestEnvironment::ProgramRun ran = TestEnvironment::run(program, arguments);
    return ran.status == 0 ? QString() : program + " failed: " + ran.output;
}

// What the desktop reads: desktop-file-validate accepts the entry and GIO starts the program
// under its odd path with the file given.
TEST(DesktopEntryFiles, AnExecutableWithBlanksQuotesAndDollarsStartsFromTheEntry)
{
    const QString program = TestEnvironment::home() + "/My Apps/it's \"$HOME\" `x` \\ (1)/Tolvane";
    const QString record = TestEnvironment::home() + "/arguments";
    TestEnvironment::writeFile(
        program, "#!/bin/sh\nprintf '%s\\n' \"$0\" \"$@\" > '" + QFile::encodeName(record) + "'\n");
    QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QString entryPath = TestEnvironment::home() + "/tolvane.desktop";
    const QString entry = DesktopEntryFiles::desktopEntry(
        QString(), "Tolvane", program, { "image/x-eps" }, QString());
    TestEnvironment::writeFile(entryPath, entry.toUtf8());

    EXPECT_EQ(run("desktop-file-validate", { entryPath }), "");
    EXPECT_EQ(DesktopEntryFiles::desktopEntryValue(entry, "TryExec"), program);
    EXPECT_EQ(run("gio", { "launch", entryPath, "/tmp/a b.eps" }), "");
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return QFile::exists(record); }, 30000));
    EXPECT_TRUE(TestEnvironment::waitUntil(
        [&] {
            return TestEnvironment::readFile(record) == (program + "\n/tmp/a b.eps\n").toUtf8();
        },
        30000))
        << TestEnvironment::readFile(record).toStdString();
}

TEST(DesktopEntryFiles, TheTemplateKeepsItsKeysButThoseOfTheBundle)
{
    const QString entry = DesktopEntryFiles::desktopEntry(
        "# comment\n[Desktop Entry]\nName=Tolvane\nExec=tolvane %U\n"
        "Exec[de]=tolvane\nIcon=old\nTerminal=false\n\n"
        "[Desktop Action New]\nExec=tolvane --new\n",
        "ignored", "/opt/Tolvane.app/Contents/Linux/Tolvane", { "a/b", "x-scheme-handler/c" },
        "app.tolvane.Tolvane");
    EXPECT_EQ(entry,
        "# comment\n[Desktop Entry]\nName=Tolvane\nTerminal=false\n"
        "Exec=/opt/Tolvane.app/Contents/Linux/Tolvane %U\n"
        "TryExec=/opt/Tolvane.app/Contents/Linux/Tolvane\nMimeType=a/b;x-scheme-handler/c;\n"
        "Icon=app.tolvane.Tolvane\n\n[Desktop Action New]\nExec=tolvane --new\n");
    // Without a template: a name's leading blank is escaped, the inner ones are not.
    EXPECT_EQ(DesktopEntryFiles::desktopEntry(QString(), " Tol vane", "/T", {}, QString()),
        "[Desktop Entry]\nType=Application\nName=\\sTol vane\nExec=/T %U\nTryExec=/T\n");
}

// Beside other applications' files and the caches made of them: a second start from the same
// place changes nothing, one from another place rewrites the registration, and unregistering
// leaves the folders exactly as they were.
TEST(DesktopRegistration, FollowsTheBundleAndLeavesNothingWhenUnregistered)
{
    const QString data = TestEnvironment::userLibrary();
    TestEnvironment::writeFile(data + "/applications/other.desktop",
        "[Desktop Entry]\nType=Application\nName=Other\nExec=other %f\nMimeType=text/x-other;\n");
    EXPECT_EQ(run("update-desktop-database", { data + "/applications" }), "");
    TestEnvironment::writeFile(data + "/mime/packages/other.xml",
        "<?xml version=\"1.0\"?>\n<mime-info "
        "xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
        "<mime-type type=\"text/x-other\"><glob pattern=\"*.other\"/></mime-type>\n</mime-info>\n");
    EXPECT_EQ(run("update-mime-database", { data + "/mime" }), "");
    const QMap<QString, QByteArray> before = dataFolder();

    const QString bundle = makeBundle(TestEnvironment::home() + "/Apps/Tolvane.app");
    const auto registered = registerAt(bundle);
    EXPECT_EQ(registered.error, "");
    EXPECT_EQ(registered.changedFiles.size(), 4);
    EXPECT_TRUE(dataFolder().value("/applications/mimeinfo.cache").contains("app.tolvane.Tolvane"));
    EXPECT_EQ(registerAt(bundle).changedFiles, QStringList {});
    const QString moved = TestEnvironment::home() + "/Moved/Tolvane.app";
    ASSERT_TRUE(QDir().mkpath(TestEnvironment::home() + "/Moved"));
    ASSERT_TRUE(QDir().rename(bundle, moved));
    EXPECT_FALSE(registerAt(moved).changedFiles.isEmpty()) << "a moved copy is not registered";
    EXPECT_EQ(DesktopRegistration::registeredExecutable("app.tolvane.Tolvane"),
        moved + "/Contents/Linux/Tolvane");

    EXPECT_EQ(DesktopRegistration::unregister("app.tolvane.Tolvane").changedFiles.size(), 4);
    const QMap<QString, QByteArray> after = dataFolder();
    EXPECT_EQ(after.keys(), before.keys());
    for (const QString& file : before.keys())
        EXPECT_EQ(after.value(file), before.value(file)) << file.toStdString();
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
    EXPECT_TRUE(dataFolder().contains("/applications/app.tolvane.Tolvane.desktop"));

    ASSERT_TRUE(QDir(own).removeRecursively());
    EXPECT_EQ(DesktopRegistration::updateRegistrationAtLaunch(*installed).changedFiles.size(), 4);
    EXPECT_EQ(dataFolder().keys(), QStringList {});
    qunsetenv("TOLVANE_SYSTEM_APPLICATIONS");
}

}
