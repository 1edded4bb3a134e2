// SPDX-License-Identifier: GPL-3.0-or-later
#include "PFMoveApplication.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

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

// pkexec's stand-in, first on PATH for the whole program (the executor is looked up once). It
// notes each call and runs the program, unless asked to answer as a dismissed dialog; as root it
// runs it in a user namespace, where file permissions hold as for anyone else.
class AuthorizedInstallTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        folder = new QTemporaryDir();
        const QString pkexec = folder->path() + "/pkexec";
        QFile script(pkexec);
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\n"
                     "echo called >> \"$HOME/pkexec-calls\"\n"
                     "[ \"$STAND_IN_PKEXEC\" = cancel ] && exit 126\n"
                     "[ \"$(id -u)\" = 0 ] && exec unshare --user \"$@\"\n"
                     "exec \"$@\"\n");
        script.close();
        QFile::setPermissions(pkexec, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", QFile::encodeName(folder->path()) + ":" + qgetenv("PATH"));
    }

    static void TearDownTestSuite() { delete folder; }

    void SetUp() override
    {
        qunsetenv("STAND_IN_PKEXEC");
        applications = TestEnvironment::home() + "/Applications folder";
        installed = makeBundle(applications + "/Tolvane.app", "1");
    }

    QString calls() const
    {
        return QString::fromUtf8(
            TestEnvironment::readFile(TestEnvironment::home() + "/pkexec-calls"));
    }
    QString installedVersion() const
    {
        return QString::fromUtf8(
            TestEnvironment::readFile(installed + "/Contents/Resources/deep/version"));
    }
    QStringList folderContents() const
    {
        return QDir(applications).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    static QTemporaryDir* folder;
    QString applications;
    QString installed;
};

QTemporaryDir* AuthorizedInstallTest::folder = nullptr;

TEST_F(AuthorizedInstallTest, ReplacesTheInstalledCopyAndLeavesNoTemporaryFolder)
{
    const QString source = makeBundle(TestEnvironment::home() + "/Downloads/Tolvane.app", "2");
    bool canceled = true;
    EXPECT_TRUE(AuthorizedInstall(source, installed, &canceled));
    EXPECT_FALSE(canceled);
    EXPECT_EQ(installedVersion(), "2");
    EXPECT_EQ(folderContents(), QStringList { "Tolvane.app" });
    EXPECT_EQ(calls(), "called\n");
}

TEST_F(AuthorizedInstallTest, PathsWithQuotesDollarsAndNewlinesRunNothing)
{
    const QString odd = "it's \"$(touch pwned)\";\n`touch pwned` $HOME.app";
    const QString source = makeBundle(TestEnvironment::home() + "/Downloads/" + odd, "2");
    const QString destination = applications + "/" + odd;
    EXPECT_TRUE(AuthorizedInstall(source, destination));
    EXPECT_EQ(TestEnvironment::readFile(destination + "/Contents/Resources/deep/version"), "2");
    QDirIterator everything(TestEnvironment::home(),
        QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (everything.hasNext())
        EXPECT_NE(everything.next().section('/', -1), "pwned");
    EXPECT_FALSE(QFileInfo::exists("pwned"));
}

TEST_F(AuthorizedInstallTest, ADismissedPasswordPromptIsCanceled)
{
    qputenv("STAND_IN_PKEXEC", "cancel");
    const QString source = makeBundle(TestEnvironment::home() + "/Downloads/Tolvane.app", "2");
    bool canceled = false;
    EXPECT_FALSE(AuthorizedInstall(source, installed, &canceled));
    EXPECT_TRUE(canceled);
    EXPECT_EQ(installedVersion(), "1");
}

TEST_F(AuthorizedInstallTest, ACopyThatFailsHalfWayKeepsTheInstalledCopyWhole)
{
    if (geteuid() == 0 && QProcess::execute("unshare", { "--user", "true" }) != 0)
        GTEST_SKIP() << "as root, only a user namespace makes a file unreadable";
    const QString source = makeBundle(TestEnvironment::home() + "/Downloads/Tolvane.app", "2");
    const QString locked = source + "/Contents/Resources/deep/locked";
    TestEnvironment::writeFile(locked, "secret");
    QFile::setPermissions(locked, {});
    bool canceled = true;
    EXPECT_FALSE(AuthorizedInstall(source, installed, &canceled));
    EXPECT_FALSE(canceled);
    EXPECT_EQ(installedVersion(), "1");
    EXPECT_TRUE(QFileInfo(installed + "/Contents/Linux/Tolvane").isExecutable());
    EXPECT_EQ(folderContents(), QStringList { "Tolvane.app" });
}

TEST_F(AuthorizedInstallTest, RefusesADestinationThatIsNoApplicationWithoutAsking)
{
    const QString source = makeBundle(TestEnvironment::home() + "/Downloads/Tolvane.app", "2");
    EXPECT_FALSE(AuthorizedInstall(source, applications + "/Tolvane"));
    EXPECT_FALSE(AuthorizedInstall(" \n", installed));
    EXPECT_EQ(calls(), "");
    EXPECT_EQ(installedVersion(), "1");
}

}
