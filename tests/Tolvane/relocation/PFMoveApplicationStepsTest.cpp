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

TEST(MoveSteps, WhatCountsAsAnApplicationsFolderAndWhereToInstall)
{
    const QString home = TestEnvironment::home();
    qputenv("TOLVANE_SYSTEM_APPLICATIONS", "/usr/lib/x86_64-linux-gnu/tolvane");
    EXPECT_TRUE(IsInApplicationsFolder(home + "/Applications/Tools/Tolvane.app"));
    EXPECT_TRUE(IsInApplicationsFolder(
        qEnvironmentVariable("TOLVANE_LOCAL_APPLICATIONS") + "/Tolvane.app"));
    EXPECT_TRUE(IsInApplicationsFolder("/usr/lib/x86_64-linux-gnu/tolvane/Tolvane.app"));
    EXPECT_TRUE(IsInApplicationsFolder("/srv/Applications/Tolvane.app"));
    EXPECT_FALSE(IsInApplicationsFolder("/srv/MyApplications/Tolvane.app"));

    // The install location is the local Applications folder, its links followed.
    QDir().mkpath(home + "/disk/opt");
    ASSERT_TRUE(QFile::link(home + "/disk/opt", home + "/opt-link"));
    qputenv("TOLVANE_LOCAL_APPLICATIONS", QFile::encodeName(home + "/opt-link"));
    bool isUserDirectory = true;
    EXPECT_EQ(PreferredInstallLocation(&isUserDirectory), home + "/disk/opt");
    EXPECT_FALSE(isUserDirectory);
}

// A copy keeps executables and relative links, never copies into an existing copy, and one that
// fails half-way (no copy can make a named pipe) leaves nothing behind.
TEST(MoveSteps, CopyBundleCopiesWholeOrNothing)
{
    const QString source = TestEnvironment::home() + "/a/Tolvane.app";
    const QString destination = TestEnvironment::home() + "/b/Tolvane.app";
    TestEnvironment::writeFile(source + "/Contents/Linux/Tolvane", "#!/bin/sh\n");
    QFile::setPermissions(source + "/Contents/Linux/Tolvane", QFile::ReadOwner | QFile::ExeOwner);
    TestEnvironment::writeFile(source + "/Contents/Resources/deep/version", "2");
    QFile::link("Resources/deep/version", source + "/Contents/version");
    QDir().mkpath(TestEnvironment::home() + "/b");
    ASSERT_TRUE(CopyBundle(source, destination));
    EXPECT_TRUE(QFileInfo(destination + "/Contents/Linux/Tolvane").isExecutable());
    EXPECT_EQ(std::filesystem::read_symlink(
                  QFile::encodeName(destination + "/Contents/version").toStdString()),
        "Resources/deep/version");
    TestEnvironment::writeFile(source + "/Contents/Resources/deep/version", "3");
    EXPECT_FALSE(CopyBundle(source, destination));
    EXPECT_EQ(TestEnvironment::readFile(destination + "/Contents/Resources/deep/version"), "2");

    ASSERT_EQ(mkfifo(QFile::encodeName(source + "/Contents/Resources/pipe").constData(), 0600), 0);
    const QString other = TestEnvironment::home() + "/b/Other.app";
    EXPECT_FALSE(CopyBundle(source, other));
    EXPECT_FALSE(QFileInfo::exists(other));
}

}
