// SPDX-License-Identifier: GPL-3.0-or-later
#include "SearchPaths.h"

#include "TestEnvironment.h"

#include <gtest/gtest.h>

namespace {

TEST(SearchPaths, LibraryFoldersOfBothDomainsUserFirst)
{
    EXPECT_EQ(NSSearchPathForDirectoriesInDomains(
                  NSLibraryDirectory, NSUserDomainMask | NSLocalDomainMask, true),
        (QStringList { TestEnvironment::userLibrary(), TestEnvironment::localLibrary() }));
}

TEST(SearchPaths, WithoutXdgDataHomeTheLibraryIsUnderTheHomeFolder)
{
    qunsetenv("XDG_DATA_HOME");
    EXPECT_EQ(NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, true),
        QStringList { TestEnvironment::home() + "/.local/share" });
    EXPECT_EQ(NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, false),
        QStringList { "~/.local/share" });
    // A relative XDG_DATA_HOME is ignored, as the XDG rules say.
    qputenv("XDG_DATA_HOME", "relative/folder");
    EXPECT_EQ(NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, true),
        QStringList { TestEnvironment::home() + "/.local/share" });
}

TEST(SearchPaths, MachineWideFoldersDefaultToUsrLocalShareAndOpt)
{
    qunsetenv("TOLVANE_LOCAL_LIBRARY");
    qunsetenv("TOLVANE_LOCAL_APPLICATIONS");
    EXPECT_EQ(NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSLocalDomainMask, true),
        QStringList { "/usr/local/share" });
    EXPECT_EQ(NSSearchPathForDirectoriesInDomains(NSApplicationDirectory, NSLocalDomainMask, true),
        QStringList { "/opt" });
}

TEST(SearchPaths, ApplicationsAndDownloads)
{
    EXPECT_EQ(NSSearchPathForDirectoriesInDomains(NSApplicationDirectory, NSUserDomainMask, true),
        QStringList { TestEnvironment::home() + "/Applications" });
    TestEnvironment::writeFile(TestEnvironment::home() + "/.config/user-dirs.dirs",
        "XDG_DOWNLOAD_DIR=\"$HOME/Fetched\"\n");
    EXPECT_EQ(NSSearchPathForDirectoriesInDomains(NSDownloadsDirectory, NSAllDomainsMask, true),
        QStringList { TestEnvironment::home() + "/Fetched" });
}

TEST(SearchPaths, TheSystemApplicationsFolderIsWhereTheInstallationPutsTheBundle)
{
    qunsetenv("TOLVANE_SYSTEM_APPLICATIONS");
    EXPECT_EQ(NSSearchPathForDirectoriesInDomains(NSApplicationDirectory, NSAllDomainsMask, true),
        (QStringList { TestEnvironment::home() + "/Applications",
            qEnvironmentVariable("TOLVANE_LOCAL_APPLICATIONS"), TOLVANE_INSTALLED_BUNDLE_FOLDER }));
    // The system domain has Applications only.
    EXPECT_EQ(NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSSystemDomainMask, true),
        QStringList {});
}

TEST(SearchPaths, ADownloadsFolderSetToTheHomeFolderIsNone)
{
    // What xdg-user-dirs writes when the user removed the folder.
    TestEnvironment::writeFile(
        TestEnvironment::home() + "/.config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/\"\n");
    EXPECT_EQ(NSSearchPathForDirectoriesInDomains(NSDownloadsDirectory, NSAllDomainsMask, true),
        QStringList {});
}

TEST(SearchPaths, TildeExpansion)
{
    EXPECT_EQ(stringByExpandingTildeInPath("~"), TestEnvironment::home());
    EXPECT_EQ(stringByExpandingTildeInPath("~/a/b"), TestEnvironment::home() + "/a/b");
    EXPECT_EQ(stringByExpandingTildeInPath("/a/~"), "/a/~");
    EXPECT_EQ(stringByExpandingTildeInPath("~other/a"), "~other/a");
}

}
