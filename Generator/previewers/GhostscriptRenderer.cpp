// SPDX-License-Identifier: GPL-3.0-or-later
#include "GhostscriptRenderer.h"

#include "Previewer.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>

namespace Preview {

namespace {

    QString firstErrorLine(const QByteArray& messages)
    {
        for (const QByteArray& line : messages.split('\n')) {
            const QString text = QString::fromUtf8(line).trimmed();
            if (!text.isEmpty())
                return text.left(200);
        }
        return QStringLiteral("no picture came out");
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
    while (!m_process.waitForFinished(100)) {
        if (m_process.state() == QProcess::NotRunning)
            break;
        if (m_clock.elapsed() > m_job.timeLimitMs)
            throw RenderingFailure("Ghostscript took too long to draw the PostScript");
    }
    const QByteArray png = m_process.readAllStandardOutput();
    const QByteArray messages = m_process.readAllStandardError();
    if (m_process.exitStatus() == QProcess::CrashExit)
        throw RenderingFailure("Ghostscript stopped unexpectedly");
    if (m_process.exitCode() != 0 || !png.startsWith("\x89PNG"))
        return Formats::fail(Formats::FormatError::DamagedFile,
            QStringLiteral("the PostScript does not draw: %1").arg(firstErrorLine(messages)));
    return png;
}

Formats::ParseResult<QByteArray> renderPostScript(const QString& file, const GhostscriptJob& job)
{
    return GhostscriptRun(file, job).result();
}

}
