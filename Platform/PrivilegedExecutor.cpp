// SPDX-License-Identifier: GPL-3.0-or-later
#include "PrivilegedExecutor.h"

#include <QProcess>
#include <QStandardPaths>

namespace {

// pkexec: "the user dismissed the authentication dialog".
constexpr int dismissedStatus = 126;
// Enough of the error output to say why, without keeping a chatty program's whole output.
constexpr qsizetype keptErrorOutput = 4096;

}

const PrivilegedExecutor* PrivilegedExecutor::shared()
{
    static const PrivilegedExecutor* executor = [] {
        const QString path = QStandardPaths::findExecutable(QStringLiteral("pkexec"));
        return path.isEmpty() ? nullptr : new PrivilegedExecutor(path);
    }();
    return executor;
}

PrivilegedExecutor::PrivilegedExecutor(QString executorPath)
    : m_executorPath(std::move(executorPath))
{
}

PrivilegedExecutor::Result PrivilegedExecutor::run(
    const QString& program, const QStringList& arguments) const
{
    Result result;
    QProcess process;
    process.setProcessChannelMode(QProcess::SeparateChannels);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(m_executorPath, QStringList { program } + arguments);
    // The user may take a while to type the password: no time limit.
    if (!process.waitForStarted(-1) || !process.waitForFinished(-1)) {
        result.errorOutput = process.errorString();
        return result;
    }
    result.errorOutput
        = QString::fromLocal8Bit(process.readAllStandardError().right(keptErrorOutput));
    if (process.exitStatus() != QProcess::NormalExit)
        return result;
    result.exitCode = process.exitCode();
    result.status = statusOfExitCode(result.exitCode);
    return result;
}

PrivilegedExecutor::Status PrivilegedExecutor::statusOfExitCode(int exitCode)
{
    if (exitCode == 0)
        return Status::Succeeded;
    return exitCode == dismissedStatus ? Status::Canceled : Status::Failed;
}
