// SPDX-License-Identifier: GPL-3.0-or-later
#include "SearchPaths.h"

#include "TestEnvironment.h"

#include <gtest/gtest.h>

namespace {

QStringList search(NSSearchPathDirectory directory, unsigned domains)
{
    return NSSearchPathForDirectoriesInDomains(directory, domains, true);
}

TEST(SearchPaths, LibraryFoldersUserFirstWithTheXdgDefaults)
{
    EXPECT_EQ(search(NSLibraryDirectory, NSUserDomainMask | NSLocalDomainMask),
        (QStringList { TestEnvironment::userLibrary(), TestEnvironment::localLibrary() }));
    // A relative XDG_DATA_HOME is ignored, as the XDG rules say.
    qputenv("XDG_DATA_HOME", "relative/folder");
    EXPECT_EQ(search(NSLibraryDirectory, NSUserDomainMask),
        QStringList { TestEnvironment::home() + "/.local/share" });
    EXPECT_EQ(NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, false),
        QStringList { "~/.local/share" });
    qunsetenv("TOLVANE_LOCAL_LIBRARY");
    EXPECT_EQ(search(NSLibraryDirectory, NSLocalDomainMask), QStringList { "/usr/local/share" });
    EXPECT_EQ(search(NSLibraryDirectory, NSSystemDomainMask), QStringList {});
}

TEST(SearchPaths, ApplicationsEndWhereTheInstallationPutsTheBundle)
{
    qunsetenv("TOLVANE_SYSTEM_APPLICATIONS");
    EXPECT_EQ(search(NSApplicationDirectory, NSAllDomainsMask),
        (QStringList { TestEnvironment::home() + "/Applications",
            qEnvironmentVariable("TOLVANE_LOCAL_APPLICATIONS"), TOLVANE_INSTALLED_BUNDLE_FOLDER }));
    qunsetenv("TOLVANE_LOCAL_APPLICATIONS");
    EXPECT_EQ(search(NSApplicationDirectory, NSLocalDomainMask), QStringList { "/opt" });
}

}
