// SPDX-License-Identifier: GPL-3.0-or-later
// The move into the Applications folder as a user meets it: copies of the application (the move
// probe, which answers its windows) started from the temporary home's Downloads folder and
// elsewhere, moved into the stand-in for the machine's Applications folder.
#include "PropertyList.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

const QString questionAlert = QStringLiteral(
    "alert | Move to Applications folder? | I can move myself to the Applications folder if "
    "you'd like.%1 | Move to Applications Folder,Do Not Move | escape Do Not Move | box Do not "
    "show this message again");
const QString downloadsNote = QStringLiteral(" This will keep your Downloads folder uncluttered.");
// Whatever windows a launch shows once it goes on (an open panel, a welcome panel).
const QString wentOn = QStringLiteral("went on");

class Move : public testing::Test {
protected:
    void SetUp() override
    {
        TestEnvironment::writeFile(
            home + "/.config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/Downloads\"\n");
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("PATH", home + "/bin:" + environment.value("PATH"));
    }

    // A copy of the application, with the resources of the real one.
    static void copyApplicationTo(const QString& bundle)
    {
        QDir().mkpath(QFileInfo(bundle).absolutePath());
        ASSERT_EQ(QProcess::execute("cp", { "-R", MOVE_PROBE_BUNDLE, bundle }), 0);
        ASSERT_EQ(
            QProcess::execute("cp", { "-R", TOLVANE_APP_RESOURCES, bundle + "/Contents" }), 0);
    }

    // Runs the copy (or a wrapper that runs it) with the answer to give, until it ends. Its
    // standard error output goes to a file, which the copies it starts inherit.
    void run(const QString& bundle, const QString& answer, const QStringList& wrapper = {})
    {
        QProcess process;
        process.setStandardErrorFile(errorsPath, QIODevice::Append);
        QProcessEnvironment runEnvironment = environment;
        runEnvironment.insert("MOVE_PROBE_ANSWER", answer);
        runEnvironment.insert("MOVE_PROBE_LOG", log);
        process.setProcessEnvironment(runEnvironment);
        process.setWorkingDirectory(home);
        const QStringList command = wrapper + QStringList { bundle + "/Contents/Linux/Tolvane" };
        process.start(command.first(), command.mid(1));
        EXPECT_TRUE(process.waitForFinished(120000));
        EXPECT_EQ(process.exitCode(), 0);
    }

    // The log with the windows of a launch that went on as one line.
    QStringList lines() const
    {
        QStringList story;
        const QString text = QString::fromUtf8(TestEnvironment::readFile(log));
        for (const QString& line : text.split('\n', Qt::SkipEmptyParts)) {
            if (!line.startsWith("window "))
                story << line;
            else if (story.value(story.size() - 1) != wentOn)
                story << wentOn;
        }
        return story;
    }

    // Waits until the log ends: the copies that the move starts run on their own.
    testing::AssertionResult waitForEnd() const
    {
        if (TestEnvironment::waitUntil([&] { return lines().contains("end"); }, 120000))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << TestEnvironment::readFile(errorsPath).toStdString();
    }

    QString home = TestEnvironment::home();
    QString downloads = home + "/Downloads";
    QString applications = qEnvironmentVariable("TOLVANE_LOCAL_APPLICATIONS");
    QString installed = applications + "/Tolvane.app";
    QString log = home + "/probe.log";
    QString errorsPath = home + "/errors.txt";
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(Move, AFirstStartFromDownloadsMovesTrashesTheOldCopyAndStartsTheNewOne)
{
    const QString bundle = downloads + "/Tolvane.app";
    copyApplicationTo(bundle);
    run(bundle, "move");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(lines(),
        (QStringList { "start " + bundle, questionAlert.arg(downloadsNote), "start " + installed,
            wentOn, "end" }));
    EXPECT_FALSE(QFileInfo::exists(bundle));
    EXPECT_TRUE(TestEnvironment::readFile(home + "/.local/share/Trash/info/Tolvane.app.trashinfo")
                    .contains("Path=" + QFile::encodeName(bundle)));
}

// Outside the Downloads folder the question says nothing of it; the third start asks nothing.
TEST_F(Move, DoNotMoveAsksAgainUnlessTheBoxWasTicked)
{
    const QString bundle = home + "/Tolvane.app";
    copyApplicationTo(bundle);
    run(bundle, "stay");
    run(bundle, "stay-for-good");
    run(bundle, "move");
    const QStringList launch { "start " + bundle, questionAlert.arg(""), wentOn, "end" };
    EXPECT_EQ(lines(), (launch + launch + QStringList { "start " + bundle, wentOn, "end" }));
    EXPECT_TRUE(QFileInfo::exists(bundle));
    EXPECT_FALSE(QFileInfo::exists(installed));
}

// The Applications folder cannot be written to: the move goes through a stand-in for pkexec,
// which lets the program it runs write there. Someone who is root writes everywhere: such a test
// runs the application in a user namespace of its own, where it is not. The installed copy is
// replaced; the name's newline splits the log's line.
TEST_F(Move, APrivilegedMoveOfANameWithQuotesDollarsAndANewlineRunsNothing)
{
    QStringList wrapper;
    if (geteuid() == 0) {
        if (QProcess::execute("unshare", { "--user", "true" }) != 0)
            GTEST_SKIP() << "as root, only a user namespace keeps out of a folder";
        wrapper = { "unshare", "--user" };
    }
    const QString pkexec = home + "/bin/pkexec";
    TestEnvironment::writeFile(pkexec,
        "#!/bin/sh\n"
        "chmod u+w \"$TOLVANE_LOCAL_APPLICATIONS\"\n"
        "\"$@\"; status=$?\n"
        "chmod u-w \"$TOLVANE_LOCAL_APPLICATIONS\"\n"
        "exit $status\n");
    QFile::setPermissions(pkexec, QFile::ReadOwner | QFile::ExeOwner);
    const QString name = "Tolvane 'new' $(touch pwned);\n`touch pwned`.app";
    copyApplicationTo(downloads + "/" + name);
    // An installed copy, put there as an administrator would.
    copyApplicationTo(applications + "/" + name);
    TestEnvironment::writeFile(applications + "/" + name + "/Contents/Resources/marker", "old");
    QFile::setPermissions(applications, QFile::ReadOwner | QFile::ExeOwner);
    run(downloads + "/" + name, "move", wrapper);
    QFile::setPermissions(applications, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(QString::fromUtf8(TestEnvironment::readFile(log))
                    .contains("\nstart " + applications + "/" + name + "\nwindow "));
    EXPECT_FALSE(QFileInfo::exists(applications + "/" + name + "/Contents/Resources/marker"));
    EXPECT_EQ(QDir(applications).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        QStringList { name });
    QDirIterator everything(
        home, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (everything.hasNext())
        EXPECT_NE(everything.next().section('/', -1), "pwned");
}

}
