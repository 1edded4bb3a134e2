// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestEnvironment.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

struct ToolRun {
    int status;
    QString output;
};

ToolRun release(const QStringList& arguments)
{
    QProcess tool;
    tool.start(QStringLiteral(TOLVANE_RELEASE_TOOL), arguments);
    EXPECT_TRUE(tool.waitForFinished(60000));
    return { tool.exitCode(), QString::fromUtf8(tool.readAllStandardOutput()).trimmed() };
}

// The private key is for its owner only and never overwritten; a signature verifies with its
// public key only, for the archive it was made of.
TEST(ReleaseTool, MakesKeysAndSignsWhatVerifyAcceptsAndNothingElse)
{
    const QString key = TestEnvironment::home() + "/release-key";
    const ToolRun made = release({ "generate-keys", "--private-key", key });
    ASSERT_EQ(made.status, 0);
    const QString publicKey = made.output;
    EXPECT_EQ(QByteArray::fromBase64(publicKey.toLatin1()).size(), 32) << made.output.toStdString();
    struct stat status = {};
    ASSERT_EQ(::stat(QFile::encodeName(key).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    const QByteArray first = TestEnvironment::readFile(key);
    EXPECT_EQ(release({ "generate-keys", "--private-key", key }).status, 1);
    EXPECT_EQ(TestEnvironment::readFile(key), first);

    const QString archive = TestEnvironment::home() + "/Tolvane-2.0.tar.xz";
    TestEnvironment::writeFile(archive, QByteArray(100000, 'T'));
    const ToolRun signed_ = release({ "sign", "--private-key", key, archive });
    ASSERT_EQ(signed_.status, 0);
    const QRegularExpressionMatch attributes
        = QRegularExpression(R"re(^sparkle:edSignature="([A-Za-z0-9+/=]{88})" length="100000"$)re")
              .match(signed_.output);
    ASSERT_TRUE(attributes.hasMatch()) << signed_.output.toStdString();
    const QString signature = attributes.captured(1);
    EXPECT_EQ(release({ "verify", "--public-key", publicKey, archive, signature }).status, 0);

    const QString otherKey
        = release({ "generate-keys", "--private-key", TestEnvironment::home() + "/other" }).output;
    EXPECT_EQ(release({ "verify", "--public-key", otherKey, archive, signature }).status, 1);
    TestEnvironment::writeFile(archive, QByteArray(99999, 'T') + 'U');
    EXPECT_EQ(release({ "verify", "--public-key", publicKey, archive, signature }).status, 1);
    EXPECT_EQ(release({ "sign", archive }).status, 2);
}

}
