// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUInstallerConnection.h"

#include "PrivilegedExecutor.h"

#include <algorithm>

namespace {

// The installer verifies and unpacks before its first answer; the user may also take a while to
// authorise it.
constexpr int answerTimeoutMilliseconds = 10 * 60 * 1000;

}

SUInstallerConnection::SUInstallerConnection(
    QString installerPath, const PrivilegedExecutor* executor, QObject* parent)
    : QObject(parent)
    , m_installerPath(std::move(installerPath))
    , m_executor(executor)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    connect(
        &m_process, &QProcess::readyReadStandardOutput, this, &SUInstallerConnection::readAnswers);
    connect(&m_process, &QProcess::finished, this, &SUInstallerConnection::processEnded);
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            fail({ SUUpdaterError::InstallFailed, m_process.errorString() });
    });
}

SUInstallerConnection::~SUInstallerConnection()
{
    m_ended = true;
    m_process.disconnect(this);
    if (m_process.state() == QProcess::NotRunning)
        return;
    // End of input: the installer rolls back whatever it did and ends.
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(answerTimeoutMilliseconds))
        m_process.kill();
}

void SUInstallerConnection::start(
    const QString& bundle, const QString& archive, const QString& edSignature, qint64 length)
{
    QStringList arguments { bundle, archive, edSignature, QString::number(length) };
    if (m_executor) {
        arguments.prepend(m_installerPath);
        m_process.start(m_executor->executorPath(), arguments);
    } else {
        m_process.start(m_installerPath, arguments);
    }
}

void SUInstallerConnection::install() { send("install"); }

void SUInstallerConnection::commit() { send("commit"); }

void SUInstallerConnection::rollback() { send("rollback"); }

void SUInstallerConnection::send(const QByteArray& command)
{
    if (m_process.state() == QProcess::Running)
        m_process.write(command + '\n');
}

void SUInstallerConnection::readAnswers()
{
    while (!m_ended && m_process.canReadLine()) {
        if (!handle(m_process.readLine().trimmed()))
            return;
    }
}

bool SUInstallerConnection::handle(const QByteArray& line)
{
    if (line.startsWith("ready ")) {
        emit ready(QString::fromUtf8(line.mid(6)));
    } else if (line == "installed") {
        emit installed();
    } else if (line == "committed" || line == "restored") {
        m_ended = true;
        emit finished();
        return false;
    } else if (const auto reported = errorOfLine(line)) {
        fail(*reported);
        return false;
    }
    return true;
}

std::optional<SUUpdaterError> SUInstallerConnection::errorOfLine(const QByteArray& line)
{
    if (!line.startsWith("error "))
        return std::nullopt;
    const QByteArray kind = line.mid(6).split(' ').value(0);
    const int number
        = std::clamp(kind.toInt(), int(SUUpdaterError::NoFeedURL), int(SUUpdaterError::Canceled));
    return SUUpdaterError { SUUpdaterError::Kind(number),
        QString::fromUtf8(line.mid(7 + kind.size())) };
}

void SUInstallerConnection::processEnded()
{
    readAnswers();
    if (m_ended)
        return;
    // The installer ended without a last word: the executor refused it, or it crashed.
    if (m_executor && m_process.exitStatus() == QProcess::NormalExit
        && PrivilegedExecutor::statusOfExitCode(m_process.exitCode())
            == PrivilegedExecutor::Status::Canceled) {
        fail({ SUUpdaterError::AuthorizationCanceled, {} });
        return;
    }
    fail({ SUUpdaterError::InstallFailed,
        QStringLiteral("The installer ended with status %1.").arg(m_process.exitCode()) });
}

void SUInstallerConnection::fail(const SUUpdaterError& error)
{
    if (m_ended)
        return;
    m_ended = true;
    emit failed(error);
}

bool SUInstallerConnection::installAndCommitNow(SUUpdaterError* error)
{
    // The answers are read here, not from the event loop.
    m_process.disconnect(this);
    m_ended = true;
    SUUpdaterError failure { SUUpdaterError::InstallFailed,
        QStringLiteral("The installer ended without an answer.") };
    send("install");
    for (;;) {
        if (!m_process.canReadLine()
            && (m_process.state() != QProcess::Running
                || !m_process.waitForReadyRead(answerTimeoutMilliseconds)))
            break;
        if (!m_process.canReadLine())
            continue;
        const QByteArray line = m_process.readLine().trimmed();
        if (line == "installed") {
            send("commit");
        } else if (line == "committed") {
            m_process.waitForFinished(answerTimeoutMilliseconds);
            return true;
        } else if (const auto reported = errorOfLine(line)) {
            failure = *reported;
            break;
        }
    }
    if (error)
        *error = failure;
    return false;
}
