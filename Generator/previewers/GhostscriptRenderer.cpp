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

Formats::ParseResult<QByteArray> renderPostScript(const QString& file, const GhostscriptJob& job)
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
    // -f: the file name is never taken for an option. A program that shows its page makes this
    // second one, which -dLastPage=1 leaves out.
    arguments << QStringLiteral("-f") << file << QStringLiteral("-c") << QStringLiteral("showpage");

    QProcess process;
    process.setProgram(gs);
    process.setArguments(arguments);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QIODevice::ReadOnly);
    if (!process.waitForStarted(5000))
        throw RenderingFailure("Ghostscript did not start");

    QElapsedTimer clock;
    clock.start();
    while (!process.waitForFinished(100)) {
        if (process.state() == QProcess::NotRunning)
            break;
        if (clock.elapsed() > job.timeLimitMs) {
            process.kill();
            process.waitForFinished(2000);
            throw RenderingFailure("Ghostscript took too long to draw the PostScript");
        }
    }
    const QByteArray png = process.readAllStandardOutput();
    const QByteArray messages = process.readAllStandardError();
    if (process.exitStatus() == QProcess::CrashExit)
        throw RenderingFailure("Ghostscript stopped unexpectedly");
    if (process.exitCode() != 0 || !png.startsWith("\x89PNG"))
        return Formats::fail(Formats::FormatError::DamagedFile,
            QStringLiteral("the PostScript does not draw: %1").arg(firstErrorLine(messages)));
    return png;
}

}
