// SPDX-License-Identifier: GPL-3.0-or-later
#include "DesktopEntryFiles.h"

#include "TestEnvironment.h"

#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

namespace {

using namespace DesktopEntryFiles;

QString run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    process.waitForFinished(60000);
    return process.exitCode() == 0 ? QString() : QString::fromUtf8(process.readAll());
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
    const QString entry = desktopEntry(QString(), "Tolvane", program, { "image/x-eps" }, QString());
    TestEnvironment::writeFile(entryPath, entry.toUtf8());

    EXPECT_EQ(run("desktop-file-validate", { entryPath }), "");
    EXPECT_EQ(desktopEntryValue(entry, "TryExec"), program);
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
    const QString entry = desktopEntry("# comment\n[Desktop Entry]\nName=Tolvane\nExec=tolvane %U\n"
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
    EXPECT_EQ(desktopEntry(QString(), " Tol vane", "/T", {}, QString()),
        "[Desktop Entry]\nType=Application\nName=\\sTol vane\nExec=/T %U\nTryExec=/T\n");
}

}
