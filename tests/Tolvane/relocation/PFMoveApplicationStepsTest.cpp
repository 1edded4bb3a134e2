// SPDX-License-Identifier: GPL-3.0-or-later
#include "PFMoveApplication.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

using namespace PFMoveApplication;

TEST(MoveSteps, WhatCountsAsAnApplicationsOrADownloadsFolder)
{
    const QString home = TestEnvironment::home();
    const QString local = qEnvironmentVariable("TOLVANE_LOCAL_APPLICATIONS");
    qputenv("TOLVANE_SYSTEM_APPLICATIONS", "/usr/lib/x86_64-linux-gnu/tolvane");
    TestEnvironment::writeFile(
        home + "/.config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/Fetched\"\n");

    EXPECT_TRUE(IsInApplicationsFolder(home + "/Applications/Tools/Tolvane.app"));
    EXPECT_TRUE(IsInApplicationsFolder(local + "/Tolvane.app"));
    EXPECT_TRUE(IsInApplicationsFolder("/usr/lib/x86_64-linux-gnu/tolvane/Tolvane.app"));
    EXPECT_TRUE(IsInApplicationsFolder("/srv/Applications/Tolvane.app"));
    EXPECT_FALSE(IsInApplicationsFolder("/srv/MyApplications/Tolvane.app"));
    EXPECT_FALSE(IsInApplicationsFolder(home + "/Fetched/Tolvane.app"));

    EXPECT_TRUE(IsInDownloadsFolder(home + "/Fetched/Tolvane.app"));
    EXPECT_TRUE(IsInDownloadsFolder(home + "/Fetched/unpacked/Tolvane.app"));
    EXPECT_FALSE(IsInDownloadsFolder(home + "/Tolvane.app"));
}

TEST(MoveSteps, TheInstallLocationIsTheLocalApplicationsFolderWithItsLinksFollowed)
{
    const QString real = TestEnvironment::home() + "/disk/opt";
    ASSERT_TRUE(QDir().mkpath(real));
    const QString link = TestEnvironment::home() + "/opt-link";
    ASSERT_TRUE(QFile::link(real, link));
    qputenv("TOLVANE_LOCAL_APPLICATIONS", QFile::encodeName(link));
    bool isUserDirectory = true;
    EXPECT_EQ(PreferredInstallLocation(&isUserDirectory), real);
    EXPECT_FALSE(isUserDirectory);
    // Not there yet: the install makes it.
    qputenv("TOLVANE_LOCAL_APPLICATIONS", "/nonexistent/opt");
    EXPECT_EQ(PreferredInstallLocation(), "/nonexistent/opt");
}

// A small bundle: an executable, a nested resource, a relative link.
QString makeBundle(const QString& path, const QByteArray& version)
{
    TestEnvironment::writeFile(path + "/Contents/Linux/Tolvane", "#!/bin/sh\n");
    QFile::setPermissions(
        path + "/Contents/Linux/Tolvane", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    TestEnvironment::writeFile(path + "/Contents/Resources/deep/version", version);
    QFile::link("Resources/deep/version", path + "/Contents/version");
    return path;
}

TEST(MoveSteps, CopyBundleKeepsLinksAndPermissionsAndNeverCopiesIntoAnExistingCopy)
{
    const QString source = makeBundle(TestEnvironment::home() + "/a/Tolvane.app", "2");
    const QString destination = TestEnvironment::home() + "/b/Tolvane.app";
    QDir().mkpath(TestEnvironment::home() + "/b");
    ASSERT_TRUE(CopyBundle(source, destination));
    EXPECT_TRUE(QFileInfo(destination + "/Contents/Linux/Tolvane").isExecutable());
    EXPECT_EQ(QFile::symLinkTarget(destination + "/Contents/version"),
        destination + "/Contents/Resources/deep/version");
    EXPECT_EQ(std::filesystem::read_symlink(
                  QFile::encodeName(destination + "/Contents/version").toStdString()),
        "Resources/deep/version");

    TestEnvironment::writeFile(source + "/Contents/Resources/deep/version", "3");
    EXPECT_FALSE(CopyBundle(source, destination));
    EXPECT_EQ(TestEnvironment::readFile(destination + "/Contents/Resources/deep/version"), "2");
}

TEST(MoveSteps, ACopyBundleThatFailsHalfWayLeavesNothingBehind)
{
    const QString source = makeBundle(TestEnvironment::home() + "/a/Tolvane.app", "2");
    // Something no copy can make: a named pipe.
    ASSERT_EQ(mkfifo(QFile::encodeName(source + "/Contents/Resources/pipe").constData(), 0600), 0);
    const QString destination = TestEnvironment::home() + "/b/Tolvane.app";
    QDir().mkpath(TestEnvironment::home() + "/b");
    EXPECT_FALSE(CopyBundle(source, destination));
    EXPECT_FALSE(QFileInfo::exists(destination));
}

}
