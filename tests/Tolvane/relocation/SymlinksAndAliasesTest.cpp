// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSString+SymlinksAndAliases.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

using namespace SymlinksAndAliases;

// A scratch folder (its own path free of links) in which links are made by their target text.
class SymlinkTree : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(scratch.isValid());
        root = QFileInfo(scratch.path()).canonicalFilePath();
    }

    QString path(const QString& relative) const { return root + u'/' + relative; }

    void makeFolder(const QString& relative) const { ASSERT_TRUE(QDir().mkpath(path(relative))); }

    void makeFile(const QString& relative) const
    {
        TestEnvironment::writeFile(path(relative), "x");
    }

    void makeLink(const QString& relative, const QString& target) const
    {
        QDir().mkpath(QFileInfo(path(relative)).absolutePath());
        ASSERT_EQ(::symlink(QFile::encodeName(target).constData(),
                      QFile::encodeName(path(relative)).constData()),
            0)
            << relative.toStdString();
    }

    QTemporaryDir scratch;
    QString root;
};

TEST(ResolvingSymlinksAndAliases, AnswersNothingForRelativeOrMissingInputAndRootIsItself)
{
    EXPECT_TRUE(stringByResolvingSymlinksAndAliases(QString()).isNull());
    EXPECT_TRUE(stringByResolvingSymlinksAndAliases("").isNull());
    EXPECT_TRUE(stringByResolvingSymlinksAndAliases("usr/bin").isNull());
    EXPECT_EQ(stringByResolvingSymlinksAndAliases("/.."), "/");
}

TEST_F(SymlinkTree, PlainPathsAreStandardized)
{
    makeFolder("a/b");
    EXPECT_EQ(stringByResolvingSymlinksAndAliases(path("a/b")), path("a/b"));
    EXPECT_EQ(stringByResolvingSymlinksAndAliases(path("a/./b/../b//")), path("a/b"));
    EXPECT_EQ(stringByResolvingSymlinksAndAliases(path("a/missing/../b")), path("a/b"));
}

TEST_F(SymlinkTree, FollowsLinksAnywhereAlongThePath)
{
    makeFolder("real/inner");
    makeFile("real/inner/file");
    makeLink("outer", "real");
    makeLink("real/shortcut", "inner/file");
    EXPECT_EQ(
        stringByResolvingSymlinksAndAliases(path("outer/inner/file")), path("real/inner/file"));
    EXPECT_EQ(stringByResolvingSymlinksAndAliases(path("outer/shortcut")), path("real/inner/file"));
}

// A relative target is taken from the link's folder; an absolute one is answered as written.
TEST_F(SymlinkTree, OneLinkIsResolvedByItsTarget)
{
    makeFolder("a/b");
    makeFile("a/x");
    makeLink("a/b/link", "../x");
    EXPECT_EQ(stringByConditionallyResolvingSymlink(path("a/b/link")), path("a/x"));
    EXPECT_EQ(stringByResolvingSymlinksAndAliases(path("a/b/link")), path("a/x"));
    const QString target = path("a") + "/./";
    makeLink("link", target);
    EXPECT_EQ(stringByConditionallyResolvingSymlink(path("link")), target);
    EXPECT_EQ(stringByResolvingSymlink(path("link")), target);
}

// A chain is followed to its end; the components inside a link's target text are kept as the
// link gives them.
TEST_F(SymlinkTree, ChainsOfLinksAreFollowedToTheEndButNotIntoTheirTargets)
{
    makeFile("file");
    makeLink("one", "two");
    makeLink("two", path("three"));
    makeLink("three", "file");
    EXPECT_EQ(stringByIterativelyResolvingSymlinkOrAlias(path("one")), path("file"));
    EXPECT_EQ(stringByResolvingSymlinksAndAliases(path("one")), path("file"));
    makeFolder("real/dir");
    makeLink("alias", "real");
    makeLink("link", "alias/dir");
    EXPECT_EQ(stringByIterativelyResolvingSymlinkOrAlias(path("link")), path("alias/dir"));
    EXPECT_EQ(stringByResolvingSymlinksAndAliases(path("link")), path("alias/dir"));
}

TEST_F(SymlinkTree, MissingOrDanglingPathsAnswerNothing)
{
    makeFolder("a");
    makeLink("dangling", "nowhere");
    EXPECT_TRUE(stringByResolvingSymlinksAndAliases(path("missing/a")).isNull());
    EXPECT_TRUE(stringByResolvingSymlinksAndAliases(path("a/missing")).isNull());
    EXPECT_TRUE(stringByResolvingSymlinksAndAliases(path("dangling")).isNull());
    EXPECT_TRUE(stringByIterativelyResolvingSymlinkOrAlias(path("dangling")).isNull());
    EXPECT_TRUE(stringByIterativelyResolvingSymlinkOrAlias(QString()).isNull());
    // The dangling link itself can still be read.
    EXPECT_EQ(stringByResolvingSymlink(path("dangling")), path("nowhere"));
}

TEST_F(SymlinkTree, CyclesAnswerNothing)
{
    makeLink("self", "self");
    makeLink("a", "b");
    makeLink("b", path("a"));
    makeFolder("dir");
    makeLink("dir/up", "../dir/up");
    for (const char* name : { "self", "a", "b", "dir/up" }) {
        EXPECT_TRUE(stringByIterativelyResolvingSymlinkOrAlias(path(name)).isNull()) << name;
        EXPECT_TRUE(stringByResolvingSymlinksAndAliases(path(name)).isNull()) << name;
    }
}

// A long chain that is not a cycle resolves up to the kernel's own limit of links.
TEST_F(SymlinkTree, ChainsLongerThanTheLimitAnswerNothing)
{
    makeFile("end");
    const auto makeChain = [&](const QString& prefix, int length) {
        for (int index = 0; index < length; ++index) {
            const QString next
                = index + 1 == length ? QStringLiteral("end") : prefix + QString::number(index + 1);
            makeLink(prefix + QString::number(index), next);
        }
    };
    makeChain("ok", maximumLinkSteps);
    makeChain("long", maximumLinkSteps + 1);
    EXPECT_EQ(stringByIterativelyResolvingSymlinkOrAlias(path("ok0")), path("end"));
    EXPECT_TRUE(stringByIterativelyResolvingSymlinkOrAlias(path("long0")).isNull());
}

TEST_F(SymlinkTree, NonLinksAndNonAliasesAreLeftAlone)
{
    makeFile("file");
    for (const QString& candidate : { path("file"), path("missing"), root }) {
        EXPECT_TRUE(stringByConditionallyResolvingSymlink(candidate).isNull());
        EXPECT_EQ(stringByResolvingSymlink(candidate), candidate);
        EXPECT_EQ(stringByIterativelyResolvingSymlinkOrAlias(candidate),
            candidate == path("missing") ? QString() : candidate);
    }
    // There are no aliases on this system.
    EXPECT_TRUE(stringByConditionallyResolvingAlias(path("file")).isNull());
    EXPECT_EQ(stringByResolvingAlias(path("file")), path("file"));
    EXPECT_EQ(stringByResolvingAlias(path("missing")), path("missing"));
}

TEST(ResolvingSymlinksAndAliases, ExpandsTheHomeFolderFirst)
{
    const QString home = QFileInfo(TestEnvironment::home()).canonicalFilePath();
    TestEnvironment::writeFile(home + "/Applications/Real.app/file", "x");
    ASSERT_EQ(
        ::symlink("Applications/Real.app", QFile::encodeName(home + "/Linked.app").constData()), 0);
    EXPECT_EQ(stringByResolvingSymlinksAndAliases("~/Linked.app"), home + "/Applications/Real.app");
    EXPECT_EQ(stringByResolvingSymlinksAndAliases("~/Linked.app/file"),
        home + "/Applications/Real.app/file");
}

}
