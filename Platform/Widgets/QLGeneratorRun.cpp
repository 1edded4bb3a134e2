// SPDX-License-Identifier: GPL-3.0-or-later
#include "QLGeneratorRun.h"

#include "Localization.h"
#include "QLGeneratorContract.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <csignal>
#include <cstring>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// Enough of stderr for the last line; a generator that floods it cannot grow this.
constexpr qsizetype standardErrorKept = 8192;
constexpr qsizetype messageLength = 200;
constexpr qint64 pageSniffLength = 65536;

QString exitStatusText(int exitCode)
{
    switch (exitCode) {
    case QLGeneratorContract::Usage:
        return NSLocalizedString(QStringLiteral("usage error"));
    case QLGeneratorContract::NotThisKind:
        return NSLocalizedString(QStringLiteral("not a file of this kind"));
    case QLGeneratorContract::DamagedFile:
        return NSLocalizedString(QStringLiteral("damaged file"));
    case QLGeneratorContract::UnsupportedVariant:
        return NSLocalizedString(QStringLiteral("unsupported variant"));
    default:
        return NSLocalizedString(QStringLiteral("exit status %1")).arg(exitCode);
    }
}

QLGeneratorOutcome failure(const QString& reason)
{
    return { QLGeneratorOutcome::Failed, {}, reason };
}

}

QLGeneratorRun::QLGeneratorRun(const QString& executable, const QString& file,
    const QString& identifier, const QString& outputFolder, Limits limits, QObject* parent)
    : QObject(parent)
    , m_outputFolder(outputFolder)
    , m_limits(limits)
{
    m_process.setProgram(executable);
    m_process.setArguments(QLGeneratorContract::previewArguments(file, identifier, outputFolder));
    // Nobody reads its stdout: a full pipe must not stall the child.
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.setStandardInputFile(QProcess::nullDevice());
    const qint64 memory = limits.memoryBytes;
    m_process.setChildProcessModifier([memory] {
        // Only async-signal-safe calls here: this runs in the child between fork and exec.
        setpgid(0, 0);
        if (memory > 0) {
            const rlimit limit { static_cast<rlim_t>(memory), static_cast<rlim_t>(memory) };
            setrlimit(RLIMIT_AS, &limit);
        }
    });
    connect(&m_process, &QProcess::finished, this, &QLGeneratorRun::processFinished);
    connect(&m_process, &QProcess::errorOccurred, this, &QLGeneratorRun::processError);
    connect(
        &m_process, &QProcess::readyReadStandardError, this, &QLGeneratorRun::collectStandardError);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_timedOut = true;
        killProcessGroup();
        m_process.kill();
    });
}

QLGeneratorRun::~QLGeneratorRun()
{
    m_process.disconnect(this);
    if (m_process.state() != QProcess::NotRunning) {
        killProcessGroup();
        m_process.kill();
        m_process.waitForFinished(1000);
    }
    killProcessGroup();
}

void QLGeneratorRun::start()
{
    m_timer.start(m_limits.time);
    m_process.start();
    // Known from the fork on, not from the started() signal: a run ended before the event loop
    // delivers that signal must still take the generator's own children with it.
    m_processGroup = m_process.processId();
}

void QLGeneratorRun::killProcessGroup()
{
    // The group outlives its leader while anything the generator started still runs.
    if (m_processGroup > 0)
        ::kill(-static_cast<pid_t>(m_processGroup), SIGKILL);
}

void QLGeneratorRun::collectStandardError()
{
    m_standardError += m_process.readAllStandardError();
    if (m_standardError.size() > standardErrorKept)
        m_standardError = m_standardError.right(standardErrorKept);
}

QString QLGeneratorRun::generatorMessage() const
{
    const QList<QByteArray> lines = m_standardError.split('\n');
    for (auto line = lines.crbegin(); line != lines.crend(); ++line) {
        QString text = QString::fromUtf8(*line);
        text.removeIf([](QChar c) { return c.category() == QChar::Other_Control; });
        text = text.simplified();
        if (!text.isEmpty())
            return text.left(messageLength);
    }
    return {};
}

void QLGeneratorRun::processError(QProcess::ProcessError error)
{
    if (error == QProcess::FailedToStart)
        finish(failure(
            NSLocalizedString(QStringLiteral("The preview generator could not be started: %1"))
                .arg(m_process.errorString())));
}

void QLGeneratorRun::processFinished(int exitCode, QProcess::ExitStatus status)
{
    collectStandardError();
    killProcessGroup();
    m_processGroup = 0;
    if (m_timedOut) {
        const auto seconds = std::chrono::duration<double>(m_limits.time).count();
        finish(failure(NSLocalizedString(
            QStringLiteral("The preview generator took longer than %1 seconds and was stopped."))
                           .arg(seconds)));
    } else if (status == QProcess::CrashExit) {
        finish(failure(NSLocalizedString(QStringLiteral("The preview generator crashed (%1)."))
                           .arg(QString::fromLocal8Bit(strsignal(exitCode)))));
    } else if (exitCode != QLGeneratorContract::Success) {
        const QString message = generatorMessage();
        finish(failure(NSLocalizedString(QStringLiteral("The preview generator stopped: %1"))
                           .arg(message.isEmpty() ? exitStatusText(exitCode) : message)));
    } else {
        finish(outcomeOfOutput());
    }
}

QLGeneratorOutcome QLGeneratorRun::outcomeOfOutput() const
{
    const QDir folder(m_outputFolder);
    const QString page = folder.filePath(QLGeneratorContract::PageFileName);
    if (QFileInfo(page).isFile()) {
        QFile file(page);
        if (!file.open(QIODevice::ReadOnly) || file.read(pageSniffLength).contains('\0'))
            return failure(NSLocalizedString(
                QStringLiteral("The preview generator wrote an unreadable page.")));
        return { QLGeneratorOutcome::Page, page, {} };
    }
    const QStringList pictures
        = folder.entryList({ QStringLiteral("*.png") }, QDir::Files, QDir::Name);
    if (!pictures.isEmpty()) {
        const QString picture = folder.filePath(pictures.first());
        QFile file(picture);
        if (!file.open(QIODevice::ReadOnly) || file.read(8) != QByteArray("\x89PNG\r\n\x1a\n", 8))
            return failure(NSLocalizedString(
                QStringLiteral("The preview generator wrote an unreadable picture.")));
        return { QLGeneratorOutcome::Picture, picture, {} };
    }
    return failure(NSLocalizedString(QStringLiteral("The preview generator wrote no preview.")));
}

void QLGeneratorRun::finish(const QLGeneratorOutcome& outcome)
{
    if (m_done)
        return;
    m_done = true;
    m_timer.stop();
    emit finished(outcome);
}
