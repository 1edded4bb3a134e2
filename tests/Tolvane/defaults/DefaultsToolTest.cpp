// SPDX-License-Identifier: GPL-3.0-or-later
#include "DefaultsTool.h"

#include "TestEnvironment.h"
#include "UserDefaults.h"

#include <QFile>
#include <gtest/gtest.h>

namespace {

struct Result {
    int status;
    QString out;
    QString err;
};

Result run(const QStringList& arguments)
{
    QString out;
    QString err;
    QTextStream outStream(&out);
    QTextStream errStream(&err);
    const int status = DefaultsTool::run(arguments, outStream, errStream);
    outStream.flush();
    errStream.flush();
    return { status, out, err };
}

const QString domain = QStringLiteral("app.tolvane.Tolvane");

TEST(DefaultsTool, WritesEachKindReadsItBackAndDeletes)
{
    EXPECT_EQ(run({ "write", domain, "Flag", "-bool", "YES" }).status, 0);
    EXPECT_EQ(run({ "write", domain, "Count", "-int", "-12" }).status, 0);
    EXPECT_EQ(run({ "write", domain, "Ratio", "-float", "2" }).status, 0);
    EXPECT_EQ(run({ "write", domain, "Name", "-string", "Gray \"dark\"" }).status, 0);
    // Each value shows its kind.
    EXPECT_EQ(run({ "read", domain }).out,
        "Count = -12\nFlag = true\nName = \"Gray \\\"dark\\\"\"\nRatio = 2.0\n");
    EXPECT_EQ(run({ "read", domain, "Ratio" }).out, "2.0\n");
    // Control characters are shown as escapes.
    ASSERT_EQ(run({ "write", domain, "Name", "-string", "a\x1b[31mb\r\tc" }).status, 0);
    EXPECT_EQ(run({ "read", domain, "Name" }).out, "\"a\\u001b[31mb\\u000d\\tc\"\n");

    // One key, then the whole domain.
    EXPECT_EQ(run({ "delete", domain, "Name" }).status, 0);
    EXPECT_EQ(run({ "read", domain, "Name" }).status, 1);
    EXPECT_EQ(run({ "delete", domain, "Name" }).status, 1);
    EXPECT_EQ(run({ "delete", domain }).status, 0);
    EXPECT_FALSE(QFile::exists(UserDefaults::pathForDomain(domain)));
}

// Bad values, bad domains and usage errors. The user's settings in a file the tool cannot read are
// theirs: a write refuses and keeps it.
TEST(DefaultsTool, RefusalsSaySoInOneLineAndWriteNothing)
{
    for (const QStringList& arguments : { QStringList { "write", domain, "Key", "-int", "1.5" },
             QStringList { "write", domain, "Key", "-bool", "maybe" },
             QStringList { "write", domain, "Key", "int", "1" },
             QStringList { "write", domain, "Key", "-int" }, QStringList { "read", "../escape" },
             QStringList {} }) {
        SCOPED_TRACE(arguments.join(' ').toStdString());
        const Result result = run(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_TRUE(result.out.isEmpty());
        EXPECT_EQ(result.err.count('\n'), 1) << result.err.toStdString();
    }
    const QString path = UserDefaults::pathForDomain(domain);
    EXPECT_FALSE(QFile::exists(path));

    TestEnvironment::writeFile(path, "<plist><dict><key>UseLoupe</key>");
    const Result result = run({ "write", domain, "Key", "-int", "1" });
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.err.count('\n'), 1) << result.err.toStdString();
    EXPECT_EQ(TestEnvironment::readFile(path), "<plist><dict><key>UseLoupe</key>");
}

}
