// SPDX-License-Identifier: GPL-3.0-or-later
#include "DefaultsTool.h"

#include "PropertyList.h"
#include "TestEnvironment.h"
#include "UserDefaults.h"
#include "VistrelUtilities.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>
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

TEST(DefaultsTool, WritesEachKindAndReadsItBack)
{
    EXPECT_EQ(run({ "write", domain, "Flag", "-bool", "YES" }).status, 0);
    EXPECT_EQ(run({ "write", domain, "Count", "-int", "-12" }).status, 0);
    EXPECT_EQ(run({ "write", domain, "Ratio", "-float", "2" }).status, 0);
    EXPECT_EQ(run({ "write", domain, "Name", "-string", "Gray \"dark\"" }).status, 0);

    const QVariantMap file
        = PropertyList::readDictionary(UserDefaults::pathForDomain(domain)).value();
    EXPECT_EQ(file.value("Flag").typeId(), QMetaType::Bool);
    EXPECT_EQ(file.value("Count"), QVariant(qint64(-12)));
    EXPECT_EQ(file.value("Ratio").typeId(), QMetaType::Double);
    EXPECT_EQ(file.value("Name"), QVariant("Gray \"dark\""));

    const Result all = run({ "read", domain });
    EXPECT_EQ(all.status, 0);
    EXPECT_EQ(all.out, "Count = -12\nFlag = true\nName = \"Gray \\\"dark\\\"\"\nRatio = 2.0\n");
    EXPECT_EQ(run({ "read", domain, "Ratio" }).out, "2.0\n");
}

TEST(DefaultsTool, BadKindsAndValuesWriteNothing)
{
    struct Case {
        QString kind;
        QString value;
    };
    for (const Case& bad : { Case { "-int", "1.5" }, Case { "-float", "" },
             Case { "-bool", "maybe" }, Case { "int", "1" } }) {
        SCOPED_TRACE((bad.kind + " " + bad.value).toStdString());
        const Result result = run({ "write", domain, "Key", bad.kind, bad.value });
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.err.count('\n'), 1) << result.err.toStdString();
    }
    EXPECT_FALSE(QFile::exists(UserDefaults::pathForDomain(domain)));
}

TEST(DefaultsTool, UnknownDomainsAndUsageErrors)
{
    for (const QStringList& arguments :
        { QStringList { "read", "app.unknown" }, QStringList { "read", "../escape" },
            QStringList {}, QStringList { "write", domain, "Key", "-int" } }) {
        SCOPED_TRACE(arguments.join(' ').toStdString());
        const Result result = run(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_TRUE(result.out.isEmpty());
        EXPECT_EQ(result.err.count('\n'), 1);
    }
}

TEST(DefaultsTool, DeletesOneKeyOrTheWholeDomain)
{
    run({ "write", domain, "A", "-int", "1" });
    run({ "write", domain, "B", "-int", "2" });
    EXPECT_EQ(run({ "delete", domain, "A" }).status, 0);
    EXPECT_EQ(run({ "read", domain }).out, "B = 2\n");
    EXPECT_EQ(run({ "delete", domain, "A" }).status, 1);
    EXPECT_EQ(run({ "read", domain, "A" }).status, 1);
    EXPECT_EQ(run({ "delete", domain }).status, 0);
    EXPECT_FALSE(QFile::exists(UserDefaults::pathForDomain(domain)));
}

// Each writer reads, merges and writes under the file's lock: none loses another's key.
TEST(DefaultsTool, ConcurrentWritersKeepEveryKey)
{
    constexpr int writers = 100;
    std::vector<std::unique_ptr<QProcess>> processes;
    for (int i = 0; i < writers; ++i) {
        processes.push_back(std::make_unique<QProcess>());
        processes.back()->start(QStringLiteral(TOLVANE_DEFAULTS_EXECUTABLE),
            { "write", domain, QStringLiteral("key %1").arg(i), "-int", QString::number(i) });
    }
    for (const auto& process : processes) {
        ASSERT_TRUE(process->waitForFinished(120000));
        EXPECT_EQ(process->exitCode(), 0) << process->readAllStandardError().toStdString();
    }
    const QVariantMap file
        = PropertyList::readDictionary(UserDefaults::pathForDomain(domain)).value();
    EXPECT_EQ(file.size(), writers);
    EXPECT_EQ(file.value("key 57"), QVariant(qint64(57)));
}

TEST(DefaultsTool, AWriteThatDidNotReachTheFileSaysSoInOneLine)
{
    // A file where the Preferences folder should be.
    TestEnvironment::writeFile(TestEnvironment::userLibrary() + "/Preferences", "not a folder");
    for (const QStringList& arguments : { QStringList { "write", domain, "Key", "-int", "1" },
             QStringList { "delete", domain, "Key" } }) {
        testing::internal::CaptureStderr();
        const Result result = run(arguments);
        const std::string logged = testing::internal::GetCapturedStderr();
        EXPECT_EQ(result.status, arguments.first() == "write" ? 3 : 2);
        EXPECT_EQ(result.err.count('\n'), 1) << result.err.toStdString();
        EXPECT_EQ(logged, "");
    }
}

// The user's settings in a file the tool cannot read are theirs: a write refuses and keeps it.
TEST(DefaultsTool, AWriteLeavesAnUnreadableFileAsItIs)
{
    const QString path = UserDefaults::pathForDomain(domain);
    TestEnvironment::writeFile(path, "<plist><dict><key>UseLoupe</key>");
    const Result result = run({ "write", domain, "Key", "-int", "1" });
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.err.count('\n'), 1) << result.err.toStdString();
    EXPECT_EQ(TestEnvironment::readFile(path), "<plist><dict><key>UseLoupe</key>");
}

TEST(DefaultsTool, ReadShowsControlCharactersAsEscapes)
{
    ASSERT_EQ(run({ "write", domain, "Name\x1b]0;", "-string", "a\x1b[31mb\r\tc\x7f" }).status, 0);
    EXPECT_EQ(
        run({ "read", domain }).out, "Name\\u001b]0; = \"a\\u001b[31mb\\u000d\\tc\\u007f\"\n");
}

TEST(DefaultsTool, PathNamesTheDomainsFile)
{
    EXPECT_EQ(run({ "path", "app.example" }).out,
        TestEnvironment::userLibrary() + "/Preferences/app.example.plist\n");
}

TEST(DefaultsTool, ReadMergedShowsTheSeventeenSettingsWithTheirKinds)
{
    run({ "write", domain, "Preview Mode", "-int", "2" });
    const Result result = run({ "read-merged" });
    ASSERT_EQ(result.status, 0);
    const QStringList lines = result.out.split('\n', Qt::SkipEmptyParts);
    EXPECT_EQ(lines.size(), 17);
    EXPECT_TRUE(lines.contains("Image Background Color Name = \"White\""));
    EXPECT_TRUE(lines.contains("Prefer Embedded Preview For Preview File Size Threshold = 256.0"));
    EXPECT_TRUE(lines.contains("Last Update Check = 0.0"));
    EXPECT_TRUE(lines.contains("Preview Mode = 2"));
    EXPECT_TRUE(lines.contains("UseLoupe = true"));
    QStringList sorted = lines;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(lines, sorted);
}

TEST(DefaultsTool, ReadMergedReportsAVersionMarkerOfTheWrongKind)
{
    run({ "write", domain, "Preferences Version", "-float", "2" });
    const Result result = run({ "read-merged" });
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.err.count('\n'), 1);
}

TEST(DefaultsTool, FormatsNestedValues)
{
    const QVariantMap nested { { "k", QVariantList { true, 1.5, QByteArray("\x01\xff", 2) } } };
    EXPECT_EQ(DefaultsTool::formatValue(nested), "{ \"k\" = ( true, 1.5, <01ff> ); }");
    EXPECT_EQ(DefaultsTool::formatValue(QDateTime::fromSecsSinceEpoch(0, Qt::UTC)),
        "1970-01-01T00:00:00Z");
    EXPECT_EQ(DefaultsTool::formatValue(128.0f), "128.0");
    EXPECT_EQ(DefaultsTool::formatValue(0.1), "0.1");
}

}
