// SPDX-License-Identifier: GPL-3.0-or-later
// The Debian package, made with CPack as the README says, into a folder of the test's own.
#include "TestEnvironment.h"

#include <QDir>
#include <QDirIterator>
#include <gtest/gtest.h>

namespace {

using TestEnvironment::run;

// Every path under the folder, links not followed.
QStringList pathsUnder(const QString& root)
{
    QStringList paths;
    QDirIterator it(root, QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot,
        QDirIterator::Subdirectories);
    while (it.hasNext())
        paths << it.next().mid(root.size() + 1);
    paths.sort();
    return paths;
}

TEST(DebianPackage, HoldsWhatTheInstallationInstallsWithItsDependenciesAndPassesLintian)
{
    const QString work = TestEnvironment::home() + "/package";
    const TestEnvironment::ProgramRun packed = run(
        "cpack", { "-G", "DEB", "--config", TOLVANE_BUILD_DIR "/CPackConfig.cmake", "-B", work });
    ASSERT_EQ(packed.status, 0) << packed.output.toStdString();
    const QString architecture = run("dpkg", { "--print-architecture" }).output.trimmed();
    const QString deb = QString("%1/tolvane_%2_%3.deb").arg(work, TOLVANE_VERSION, architecture);
    ASSERT_TRUE(QFileInfo::exists(deb)) << packed.output.toStdString();

    EXPECT_EQ(run("dpkg-deb", { "--field", deb, "Package" }).output, "tolvane\n");
    const QString depends = run("dpkg-deb", { "--field", deb, "Depends" }).output;
    // Ghostscript by name; the libraries as dpkg-shlibdeps found them in the programs.
    for (const char* package : { "ghostscript", "libc6 (", "libqt6core6 (", "libqt6widgets6 (",
             "libqt6dbus6 (", "libplist3 (", "libpoppler-qt6-3 (" })
        EXPECT_TRUE(depends.contains(package)) << package << " in " << depends.toStdString();

    QProcessEnvironment staged = QProcessEnvironment::systemEnvironment();
    staged.insert("DESTDIR", TestEnvironment::home() + "/staged");
    ASSERT_EQ(run("cmake", { "--install", TOLVANE_BUILD_DIR, "--strip" }, staged).status, 0);
    ASSERT_EQ(run("dpkg-deb", { "-x", deb, work + "/unpacked" }).status, 0);
    const QStringList paths = pathsUnder(work + "/unpacked");
    EXPECT_EQ(paths, pathsUnder(TestEnvironment::home() + "/staged"));
    // The bundle goes into the system domain's Applications folder: it never offers to move.
    const QString bundle = QString(TOLVANE_SYSTEM_APPLICATIONS).mid(1) + "/Tolvane.app";
    for (const QString& path : { bundle + "/Contents/Linux/Tolvane", QString("usr/bin/tolvane"),
             QString("usr/share/applications/app.tolvane.Tolvane.desktop"),
             QString("usr/share/dbus-1/services/app.tolvane.Tolvane.service"),
             QString("usr/share/thumbnailers/tolvane-thumbnailer.thumbnailer"),
             QString("usr/share/doc/tolvane/copyright") })
        EXPECT_TRUE(paths.contains(path)) << path.toStdString();

    const TestEnvironment::ProgramRun lint = run("lintian", { "--fail-on", "error", deb });
    EXPECT_EQ(lint.status, 0) << lint.output.toStdString();
}

}
