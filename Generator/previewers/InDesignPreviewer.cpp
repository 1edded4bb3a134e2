// SPDX-License-Identifier: GPL-3.0-or-later
#include "InDesignPreviewer.h"

#include "DocumentFile.h"
#include "InDesignHeader.h"
#include "KindContent.h"
#include "XmpMetadata.h"

#include <QFileInfo>

namespace Preview {

Formats::ParseResult<PreviewContent> InDesignPreviewer::preview(
    const QString& file, const VTPreviewSettings& settings)
{
    const auto opened = DocumentFile::open(file);
    if (!opened)
        return opened.failure();
    if (const auto header = Formats::checkInDesignHeader((*opened)->bytes()); !header)
        return header.failure();

    PreviewContent content;
    content.title = QFileInfo(file).fileName();
    content.kindName = file.endsWith(u".indt", Qt::CaseInsensitive)
        ? QStringLiteral("InDesign template")
        : QStringLiteral("InDesign document");
    content.spreadMode = settings.inDesignSpreadMode;
    const auto xmp = Formats::readXmpOfFile(file);
    if (!xmp) {
        content.notes.append(xmp.error() == Formats::FormatError::NotThisKind
                ? QStringLiteral("The document carries no metadata")
                : QStringLiteral("The metadata cannot be read: %1").arg(xmp.reason()));
        takePages(content, {}, settings);
        return content;
    }
    addXmpContent(content, *xmp, file, settings);
    return content;
}

}
