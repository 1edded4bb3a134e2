// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewerTable.h"

#include "DocumentFile.h"
#include "IdmlPackage.h"
#include "IllustratorPdfPreviewer.h"
#include "InDesignPreviewer.h"
#include "InterchangePreviewer.h"
#include "PostScriptPreviewer.h"
#include "SwatchExchangePreviewer.h"
#include "VistrelUtilities.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>

namespace Preview {

using Formats::FileKind;

namespace {

    // The kinds a type identifier stands for; the first is the one to try when the bytes say
    // nothing certain.
    std::vector<FileKind> kindsOfUti(const QString& uti)
    {
        if (VTutiIsIllustrator(uti))
            return { FileKind::IllustratorPdf, FileKind::IllustratorPostScript, FileKind::Eps };
        if (VTutiIsInDesign(uti))
            return { FileKind::InDesign };
        if (VTutiIsInDesignINX(uti))
            return { FileKind::InDesignInterchange, FileKind::Idml };
        if (VTutiIsEPS(uti))
            return { FileKind::Eps, FileKind::IllustratorPostScript };
        if (VTutiIsFreehand(uti))
            return { FileKind::FreeHand };
        if (VTutiIsASE(uti))
            return { FileKind::SwatchExchange };
        return {};
    }

    // A ZIP archive that the first bytes do not show as IDML (its "mimetype" entry is not first)
    // may still be one: its central directory tells.
    FileKind lookIntoArchive(const QString& file, QByteArrayView head, FileKind sniffed)
    {
        if (sniffed != FileKind::Unknown || !head.startsWith("PK\x03\x04"))
            return sniffed;
        const auto document = DocumentFile::open(file);
        return document && Formats::isIdmlPackage((*document)->bytes()) ? FileKind::Idml : sniffed;
    }

    QString kindWords(FileKind kind)
    {
        return kind == FileKind::Unknown
            ? QStringLiteral("of no kind this generator previews")
            : QStringLiteral("a %1 file").arg(Formats::fileKindName(kind));
    }

}

const std::vector<PreviewerEntry>& previewerTable()
{
    static const std::vector<PreviewerEntry> table = [] {
        std::vector<PreviewerEntry> entries {
            { FileKind::IllustratorPdf,
                [] { return std::make_unique<IllustratorPdfPreviewer>(); } },
            { FileKind::IllustratorPostScript,
                [] {
                    return std::make_unique<PostScriptPreviewer>(
                        PostScriptPreviewer::Kind::Illustrator);
                } },
            { FileKind::Eps,
                [] {
                    return std::make_unique<PostScriptPreviewer>(PostScriptPreviewer::Kind::Eps);
                } },
            { FileKind::InDesign, [] { return std::make_unique<InDesignPreviewer>(); } },
            { FileKind::InDesignInterchange,
                [] { return std::make_unique<InterchangePreviewer>(); } },
            { FileKind::Idml, [] { return std::make_unique<InterchangePreviewer>(); } },
            { FileKind::SwatchExchange,
                [] { return std::make_unique<SwatchExchangePreviewer>(); } },
        };
        for (PreviewerEntry& entry : optionalPreviewers())
            entries.push_back(std::move(entry));
        return entries;
    }();
    return table;
}

std::unique_ptr<Previewer> previewerForKind(FileKind kind)
{
    for (const PreviewerEntry& entry : previewerTable()) {
        if (entry.kind == kind)
            return entry.make();
    }
    return nullptr;
}

Formats::ParseResult<FileKind> chooseFileKind(const QString& file, const QString& uti)
{
    QFile input(file);
    QByteArray head;
    if (input.open(QIODevice::ReadOnly))
        head = input.read(Formats::FileKindHeadSize);
    const FileKind sniffed
        = lookIntoArchive(file, head, Formats::sniffFileKind(head, QFileInfo(file).fileName()));
    const std::vector<FileKind> claimed = kindsOfUti(uti);
    if (claimed.empty()) {
        if (sniffed == FileKind::Unknown)
            return Formats::fail(Formats::FormatError::NotThisKind,
                QStringLiteral("the file is %1").arg(kindWords(sniffed)));
        return sniffed;
    }
    // The bytes are unsure only when they tell no kind: the previewer of the claimed kind then
    // looks closer and says what is wrong.
    if (sniffed == FileKind::Unknown)
        return claimed.front();
    if (std::find(claimed.begin(), claimed.end(), sniffed) != claimed.end())
        return sniffed;
    return Formats::fail(Formats::FormatError::NotThisKind,
        QStringLiteral("the type %1 was given, but the file is %2").arg(uti, kindWords(sniffed)));
}

}
