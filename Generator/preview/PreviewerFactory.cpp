// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewerFactory.h"

#include "IllustratorPdfPreviewer.h"
#include "KindPreviewers.h"
#include "PostScriptPreviewer.h"
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

    QString kindWords(FileKind kind)
    {
        return kind == FileKind::Unknown
            ? QStringLiteral("of no kind this generator previews")
            : QStringLiteral("a %1 file").arg(Formats::fileKindName(kind));
    }

}

std::unique_ptr<Previewer> previewerForKind(FileKind kind)
{
    switch (kind) {
    case FileKind::IllustratorPdf:
        return std::make_unique<IllustratorPdfPreviewer>();
    case FileKind::IllustratorPostScript:
        return std::make_unique<PostScriptPreviewer>(PostScriptPreviewer::Kind::Illustrator);
    case FileKind::Eps:
        return std::make_unique<PostScriptPreviewer>(PostScriptPreviewer::Kind::Eps);
#ifdef TOLVANE_GENERATOR_HAS_KINDS
    case FileKind::InDesign:
        return Kinds::createInDesignPreviewer();
    case FileKind::InDesignInterchange:
    case FileKind::Idml:
        return Kinds::createInterchangePreviewer();
    case FileKind::FreeHand:
        return Kinds::createFreeHandPreviewer();
    case FileKind::SwatchExchange:
        return Kinds::createSwatchExchangePreviewer();
#endif
    default:
        return nullptr;
    }
}

Formats::ParseResult<FileKind> chooseFileKind(const QString& file, const QString& uti)
{
    QFile input(file);
    QByteArray head;
    if (input.open(QIODevice::ReadOnly))
        head = input.read(Formats::FileKindHeadSize);
    const FileKind sniffed = Formats::sniffFileKind(head, QFileInfo(file).fileName());
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
