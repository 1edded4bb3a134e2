// SPDX-License-Identifier: GPL-3.0-or-later
// The generator's check-update command, run as a process against a server on 127.0.0.1.
#include "HttpTestServer.h"
#include "TestEnvironment.h"

#include <QProcess>
#include <gtest/gtest.h>

namespace {

const QByteArray updateAnswer = "<plist version=\"1.0\"><dict>"
                                "<key>QXSoftwareUpdateFoundUpdateKey</key><true/>"
                                "<key>QXSoftwareUpdateNewVersionKey</key><string>2.0</string>"
                                "<key>QXSoftwareUpdateDownloadURLKey</key>"
                                "<string>https://tolvane.example/get</string></dict></plist>";

struct Outcome {
    int exitCode = -1;
    QString standardOutput;
    QString standardError;
};

class CheckUpdate : public testing::Test {
protected:
    // The server answers while the command runs, so the wait keeps the event loop going.
    Outcome run(const QStringList& arguments, const QString& host = {})
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TOLVANE_UPDATE_HOST", host.isEmpty() ? server.authority() : host);
        process.setProcessEnvironment(environment);
        process.start(
            QStringLiteral(VISTREL_EXECUTABLE), QStringList { "check-update" } + arguments);
        EXPECT_TRUE(TestEnvironment::waitUntil(
            [&] { return process.state() == QProcess::NotRunning; }, 60000));
        return { process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError()) };
    }

    HttpTestServer server;
};

TEST_F(CheckUpdate, AnAnswerPrintsItsKeysOrUpToDate)
{
    server.respond({ 200, updateAnswer, "application/xml" });
    const Outcome outcome = run({ "--auto" });
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.standardOutput,
        "QXSoftwareUpdateFoundUpdateKey = true\nQXSoftwareUpdateNewVersionKey = 2.0\n"
        "QXSoftwareUpdateDownloadURLKey = https://tolvane.example/get\n");
    ASSERT_EQ(server.requests().size(), 1);
    EXPECT_TRUE(server.requests()[0].target.endsWith("&form=XML&ref=auto"));

    // An answer without a new version is being up to date; a check by hand says "menu".
    server.respond({ 200, "<plist><dict/></plist>", "application/xml" });
    const Outcome upToDate = run({});
    EXPECT_EQ(upToDate.exitCode, 0);
    EXPECT_TRUE(upToDate.standardOutput.contains("up to date"))
        << upToDate.standardOutput.toStdString();
    EXPECT_TRUE(server.requests().last().target.endsWith("&form=XML&ref=menu"));
}

TEST_F(CheckUpdate, NoAnswerIsOneLineAndStatusOne)
{
    server.respond({ 404, updateAnswer, "application/xml" });
    for (const QString& host : { server.authority(), QString("updates.unresolvable.invalid") }) {
        const Outcome outcome = run({}, host);
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_TRUE(outcome.standardOutput.isEmpty());
        EXPECT_EQ(outcome.standardError.count('\n'), 1) << outcome.standardError.toStdString();
        EXPECT_TRUE(outcome.standardError.contains(host)) << outcome.standardError.toStdString();
    }
    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_EQ(run({ "--often" }).exitCode, 2);
}

}
