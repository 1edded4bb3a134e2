// SPDX-License-Identifier: GPL-3.0-or-later
#include "GhostscriptRenderer.h"

#include "Previewer.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>

namespace Preview {

namespace {

    // A program may print without end: of its messages only the last ones are kept, where
    // Ghostscript's own error report stands.
    constexpr qsizetype KeptMessageBytes = 8192;

    // Ghostscript's error line ("Error: /undefined in foo"), else the last line it printed.
    QString errorLine(const QByteArray& messages)
    {
        QString last;
        for (const QByteArray& line : messages.split('\n')) {
            const QString text = QString::fromUtf8(line).trimmed();
            if (text.startsWith(u"Error:"))
                return text.left(200);
            if (!text.isEmpty())
                last = text;
        }
        return last.isEmpty() ? QStringLiteral("no picture came out") : last.left(200);
    }

}

GhostscriptRun::GhostscriptRun(const QString& file, const GhostscriptJob& job)
    : m_job(job)
{
    const QString gs = QStandardPaths::findExecutable(QStringLiteral("gs"));
    if (gs.isEmpty())
        throw RenderingFailure("Ghostscript (gs) is not installed");

    QStringList arguments { QStringLiteral("-dSAFER"), QStringLiteral("-dBATCH"),
        QStringLiteral("-dNOPAUSE"), QStringLiteral("-dQUIET"), QStringLiteral("-dNOPROMPT"),
        QStringLiteral("-sDEVICE=pngalpha"), QStringLiteral("-dTextAlphaBits=4"),
        QStringLiteral("-dGraphicsAlphaBits=4"), QStringLiteral("-dLastPage=1"),
        QStringLiteral("-r%1").arg(job.dpi),
        // The program's own output to stdout would corrupt the PNG there.
        QStringLiteral("-sstdout=%stderr"), QStringLiteral("-sOutputFile=-") };
    if (job.epsCrop)
        arguments.append(QStringLiteral("-dEPSCrop"));
    // -f: the file name is never taken for an option.
    arguments << QStringLiteral("-f") << file;
    if (job.showPageAtEnd)
        arguments << QStringLiteral("-c") << QStringLiteral("showpage");

    m_process.setProgram(gs);
    m_process.setArguments(arguments);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_clock.start();
    m_process.start(QIODevice::ReadOnly);
    if (!m_process.waitForStarted(5000))
        throw RenderingFailure("Ghostscript did not start");
}

GhostscriptRun::~GhostscriptRun()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished(2000);
    }
}

Formats::ParseResult<QByteArray> GhostscriptRun::result()
{
    QByteArray messages;
    // The messages are taken one read of the pipe at a time: waiting for the end instead would
    // gather all that a program printing without pause wrote meanwhile, as much as the machine
    // could move in that time.
    m_process.setReadChannel(QProcess::StandardError);
    while (m_process.state() != QProcess::NotRunning) {
        m_process.waitForReadyRead(20);
        messages.append(m_process.readAllStandardError());
        if (messages.size() > KeptMessageBytes)
            messages = messages.right(KeptMessageBytes);
        if (m_clock.elapsed() > m_job.timeLimitMs)
            throw RenderingFailure("Ghostscript took too long to draw the PostScript");
    }
    messages.append(m_process.readAllStandardError());
    const QByteArray png = m_process.readAllStandardOutput();
    if (m_process.exitStatus() == QProcess::CrashExit)
        throw RenderingFailure("Ghostscript stopped before it had drawn (out of time or memory)");
    if (m_process.exitCode() != 0 || !png.startsWith("\x89PNG"))
        return Formats::fail(Formats::FormatError::DamagedFile,
            QStringLiteral("the PostScript does not draw: %1")
                .arg(errorLine(messages.right(KeptMessageBytes))));
    return png;
}

Formats::ParseResult<QByteArray> renderPostScript(const QString& file, const GhostscriptJob& job)
{
    return GhostscriptRun(file, job).result();
}

}
