// SPDX-License-Identifier: GPL-3.0-or-later
#include "PrivilegedExecutor.h"

#include "TestEnvironment.h"

#include <QFile>
#include <gtest/gtest.h>

namespace {

// A stand-in for pkexec: runs its arguments as they are, or answers as a dismissed dialog.
QString fakeExecutor(const QByteArray& body)
{
    const QString path = TestEnvironment::home() + QStringLiteral("/fake-pkexec");
    TestEnvironment::writeFile(path, "#!/bin/sh\n" + body + "\n");
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
}

}

// A dismissed password dialog is a cancel.
TEST(PrivilegedExecutor, PassesArgumentsUntouchedAndReportsTheProgramsStatus)
{
    const PrivilegedExecutor executor(fakeExecutor("exec \"$@\""));
    const QString odd = TestEnvironment::home() + QStringLiteral("/it's $(touch x); a\nb");
    const auto copied = executor.run(QStringLiteral("/bin/sh"),
        { QStringLiteral("-c"), QStringLiteral("printf %s \"$1\" > \"$1\""), QStringLiteral("sh"),
            odd });
    EXPECT_EQ(copied.status, PrivilegedExecutor::Status::Succeeded);
    EXPECT_EQ(QString::fromUtf8(TestEnvironment::readFile(odd)), odd);
    EXPECT_FALSE(QFile::exists(QStringLiteral("x")));

    const auto failed = executor.run(
        QStringLiteral("/bin/sh"), { QStringLiteral("-c"), QStringLiteral("echo no >&2; exit 3") });
    EXPECT_EQ(failed.status, PrivilegedExecutor::Status::Failed);
    EXPECT_EQ(failed.exitCode, 3);
    EXPECT_EQ(failed.errorOutput.trimmed(), QStringLiteral("no"));

    const PrivilegedExecutor dismissed(fakeExecutor("exit 126"));
    EXPECT_EQ(dismissed.run(QStringLiteral("/bin/true"), {}).status,
        PrivilegedExecutor::Status::Canceled);
}
