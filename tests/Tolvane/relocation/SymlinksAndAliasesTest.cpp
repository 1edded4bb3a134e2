// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSString+SymlinksAndAliases.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

using namespace SymlinksAndAliases;

// A folder of the temporary home (its own path free of links) in which links are made by their
// target text.
class SymlinkTree : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(QDir().mkpath(root)); }

    QString path(const QString& relative) const { return root + u'/' + relative; }

    void makeLink(const QString& relative, const QString& target) const
    {
        QDir().mkpath(QFileInfo(path(relative)).absolutePath());
        ASSERT_TRUE(QFile::link(target, path(relative))) << relative.toStdString();
    }

    QString root = QFileInfo(TestEnvironment::home()).canonicalFilePath() + "/tree";
};

TEST_F(SymlinkTree, FollowsLinksAlongThePathAndStandardizesTheRest)
{
    TestEnvironment::writeFile(path("real/inner/file"), "x");
    makeLink("outer", "real");
    // A relative target is taken from the link's folder; an absolute one as written.
    makeLink("real/deep/up", "../inner/file");
    makeLink("absolute", path("real") + "/./");
    EXPECT_EQ(
        stringByResolvingSymlinksAndAliases(path("real/./inner/../inner//")), path("real/inner"));
    EXPECT_EQ(
        stringByResolvingSymlinksAndAliases(path("real/missing/../inner")), path("real/inner"));
    EXPECT_EQ(
        stringByResolvingSymlinksAndAliases(path("outer/inner/file")), path("real/inner/file"));
    EXPECT_EQ(stringByResolvingSymlinksAndAliases(path("outer/deep/up")), path("real/inner/file"));
    EXPECT_EQ(stringByConditionallyResolvingSymlink(path("real/deep/up")), path("real/inner/file"));
    EXPECT_EQ(stringByResolvingSymlink(path("absolute")), path("real") + "/./");

    // A chain is followed to its end; the components inside a link's target text are kept.
    makeLink("one", "two");
    makeLink("two", path("outer/inner"));
    EXPECT_EQ(stringByIterativelyResolvingSymlinkOrAlias(path("one")), path("outer/inner"));
    EXPECT_EQ(stringByResolvingSymlinksAndAliases(path("one")), path("outer/inner"));

    // What is no link is left alone.
    EXPECT_TRUE(stringByConditionallyResolvingSymlink(path("real")).isNull());
    EXPECT_EQ(stringByResolvingSymlink(path("real")), path("real"));
}

TEST_F(SymlinkTree, MissingDanglingAndCyclicPathsAnswerNothing)
{
    TestEnvironment::writeFile(path("end"), "x");
    makeLink("dangling", "nowhere");
    makeLink("self", "self");
    makeLink("a", "b");
    makeLink("b", path("a"));
    // A relative path answers nothing either; the root is itself.
    EXPECT_TRUE(stringByResolvingSymlinksAndAliases("tree/end").isNull());
    EXPECT_EQ(stringByResolvingSymlinksAndAliases("/.."), "/");
    for (const char* name : { "missing/end", "dangling", "self", "a" }) {
        EXPECT_TRUE(stringByIterativelyResolvingSymlinkOrAlias(path(name)).isNull()) << name;
        EXPECT_TRUE(stringByResolvingSymlinksAndAliases(path(name)).isNull()) << name;
    }
    // The dangling link itself can still be read.
    EXPECT_EQ(stringByResolvingSymlink(path("dangling")), path("nowhere"));
}

}
