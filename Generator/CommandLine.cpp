// SPDX-License-Identifier: GPL-3.0-or-later
#include "CommandLine.h"

#include "CheckUpdateCommand.h"
#include "FontLookup.h"
#include "MemoryBudget.h"
#include "OutputFile.h"
#include "PngEncoding.h"
#include "PreviewOutput.h"
#include "PreviewerTable.h"
#include "ProgramStart.h"
#include "QLGeneratorContract.h"

#include <QFileInfo>
#include <QPainter>
#include <optional>

namespace Preview {

using namespace QLGeneratorContract;

namespace {

    const char* const UsageText
        = "usage: vistrel-pro preview [--uti UTI] --out DIR [--] FILE\n"
          "       vistrel-pro thumbnail [--uti UTI] --size N --out PNG [--] FILE\n"
          "       vistrel-pro check-update [--auto]\n";

    struct Command {
        QString verb;
        QString file;
        QString uti;
        QString out;
        int size = 0;
    };

    std::optional<Command> parse(const QStringList& arguments, QString& problem)
    {
        Command command;
        QStringList positional;
        bool options = true;
        for (qsizetype i = 0; i < arguments.size(); ++i) {
            const QString& argument = arguments[i];
            if (!options) {
                positional.append(argument);
            } else if (argument == u"--") {
                // What follows is no option, whatever it looks like ("--x.ai").
                options = false;
            } else if (argument == TypeOption || argument == OutputOption
                || argument == SizeOption) {
                if (i + 1 >= arguments.size()) {
                    problem = QStringLiteral("%1 needs a value").arg(argument);
                    return std::nullopt;
                }
                const QString value = arguments[++i];
                if (argument == TypeOption)
                    command.uti = value;
                else if (argument == OutputOption)
                    command.out = value;
                else {
                    bool ok = false;
                    command.size = value.toInt(&ok);
                    if (!ok || command.size < 1 || command.size > LargestThumbnail) {
                        problem = QStringLiteral("--size wants a number from 1 to %1")
                                      .arg(LargestThumbnail);
                        return std::nullopt;
                    }
                }
            } else if (argument.startsWith(u"--")) {
                problem = QStringLiteral("unknown option %1").arg(argument);
                return std::nullopt;
            } else {
                positional.append(argument);
            }
        }
        if (positional.size() != 2
            || (positional[0] != PreviewCommand && positional[0] != ThumbnailCommand)) {
            problem = QStringLiteral("a command (preview or thumbnail) and one file are needed");
            return std::nullopt;
        }
        command.verb = positional[0];
        command.file = positional[1];
        if (command.out.isEmpty()) {
            problem = QStringLiteral("--out is needed");
            return std::nullopt;
        }
        if (command.verb == ThumbnailCommand && command.size == 0) {
            problem = QStringLiteral("--size is needed");
            return std::nullopt;
        }
        return command;
    }

    ExitStatus statusOf(Formats::FormatError error)
    {
        switch (error) {
        case Formats::FormatError::NotThisKind:
            return NotThisKind;
        case Formats::FormatError::DamagedFile:
            return DamagedFile;
        case Formats::FormatError::UnsupportedVariant:
            return UnsupportedVariant;
        }
        return OtherFailure;
    }

    int fail(QTextStream& err, ExitStatus status, const QString& reason)
    {
        // One line, whatever a document or Ghostscript put into the reason.
        QString line = reason.simplified();
        line.removeIf([](QChar c) { return c.category() == QChar::Other_Control; });
        err << exitStatusWords(status) << ": " << line << Qt::endl;
        return status;
    }

    int report(QTextStream& err, const Formats::ParseFailure& failure)
    {
        return fail(err, statusOf(failure.error), failure.reason);
    }

    int failure(QTextStream& err, const QString& reason) { return fail(err, OtherFailure, reason); }

    // Thumbnails are opaque, on white: file managers show them on dark backgrounds too.
    QImage onPaper(const QImage& image)
    {
        QImage opaque(image.size(), QImage::Format_RGB32);
        opaque.fill(Qt::white);
        QPainter painter(&opaque);
        painter.drawImage(0, 0, image);
        return opaque;
    }

    int writeThumbnail(const QImage& image, const QString& path, QTextStream& err)
    {
        const QByteArray png = encodePng(image);
        if (png.isEmpty())
            return failure(err, QStringLiteral("cannot encode the thumbnail"));
        if (const QString problem = writeOutputFile(path, png); !problem.isEmpty())
            return failure(err, problem);
        return Success;
    }

    int run(const Command& command, QTextStream& err)
    {
        const QFileInfo info(command.file);
        if (!info.isFile() || !info.isReadable())
            return failure(err, QStringLiteral("cannot read %1").arg(command.file));
        auto kind = chooseFileKind(info.absoluteFilePath(), command.uti);
        if (!kind)
            return report(err, kind.failure());
        const std::unique_ptr<Previewer> previewer = previewerForKind(*kind);
        if (!previewer)
            return failure(err,
                QStringLiteral("%1 files are not previewed by this build")
                    .arg(Formats::fileKindName(*kind)));
        // Read afresh on every run, so a change in the application's preferences shows at once.
        const VTPreviewSettings settings = VTPreviewSettings::fromUserDefaults();

        if (command.verb == ThumbnailCommand) {
            auto image = previewer->thumbnail(info.absoluteFilePath(), command.size, settings);
            if (!image)
                return report(err, image.failure());
            return writeThumbnail(onPaper(fitWithin(*image, command.size)), command.out, err);
        }
        auto content = previewer->preview(info.absoluteFilePath(), settings);
        if (!content)
            return report(err, content.failure());
        PreviewContent shown = std::move(content).value();
        shown.title = shownFileName(info.absoluteFilePath());
        limitContent(shown);
        if (settings.showFonts)
            findInstalledFonts(shown.fonts);
        if (const QString problem = writePreview(shown, settings, command.out); !problem.isEmpty())
            return failure(err, problem);
        return Success;
    }

}

int runCommandLine(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    if (arguments.size() == 1 && (arguments[0] == u"--help" || arguments[0] == u"-h")) {
        out << UsageText;
        return Success;
    }
    if (!arguments.isEmpty() && arguments[0] == u"check-update")
        return runCheckUpdate(arguments.mid(1), out, err);
    QString problem;
    const std::optional<Command> command = parse(arguments, problem);
    if (!command) {
        return fail(err, Usage, problem + QStringLiteral(" (see vistrel-pro --help)"));
    }
    try {
        return run(*command, err);
    } catch (const std::bad_alloc&) {
        const std::uint64_t limit = addressSpaceLimit();
        return failure(err,
            limit == 0 ? QStringLiteral("the document needs more memory than there is")
                       : QStringLiteral("the document needs more memory than the %1 MB the "
                                        "generator may use")
                             .arg(limit >> 20));
    } catch (const std::exception& exception) {
        return failure(err, QString::fromLocal8Bit(exception.what()));
    }
}

}
