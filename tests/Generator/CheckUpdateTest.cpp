// SPDX-License-Identifier: GPL-3.0-or-later
// The generator's check-update command, run as a process against a server on 127.0.0.1.
#include "GeneratorProcess.h"
#include "HttpTestServer.h"

#include <gtest/gtest.h>

using namespace GeneratorProcess;

namespace {

const QByteArray updateAnswer = "<plist version=\"1.0\"><dict>"
                                "<key>QXSoftwareUpdateFoundUpdateKey</key><true/>"
                                "<key>QXSoftwareUpdateNewVersionKey</key><string>2.0</string>"
                                "<key>QXSoftwareUpdateDownloadURLKey</key>"
                                "<string>https://tolvane.example/get</string></dict></plist>";

class CheckUpdate : public testing::Test {
protected:
    Outcome run(const QStringList& arguments)
    {
        return runGenerator(QStringList { "check-update" } + arguments,
            { .environment = [this](QProcessEnvironment& environment) {
                environment.insert("TOLVANE_UPDATE_HOST", server.authority());
            } });
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
    EXPECT_TRUE(upToDate.standardOutput.contains("up to date")) << upToDate.standardOutput.data();
    EXPECT_TRUE(server.requests().last().target.endsWith("&form=XML&ref=menu"));
}

// runGenerator checks that the failure is one line with the words of its status. A host that
// does not resolve is no answer too (UpdateCheck shows that), the same branch here.
TEST_F(CheckUpdate, NoAnswerIsOneLineAndStatusOne)
{
    server.respond({ 404, updateAnswer, "application/xml" });
    const Outcome outcome = run({});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.standardOutput.isEmpty());
    EXPECT_TRUE(outcome.standardError.contains(server.authority()))
        << outcome.standardError.toStdString();
    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_EQ(run({ "--often" }).exitCode, 2);
}

}
