// SPDX-License-Identifier: GPL-3.0-or-later
#include "InDesignPreviewer.h"

#include "InDesignContainer.h"
#include "KindContent.h"
#include "KindPreviewers.h"

#include <QFile>
#include <QFileInfo>

namespace Preview::Kinds {

Formats::ParseResult<PreviewContent> InDesignPreviewer::preview(
    const QString& file, const PreviewSettings& settings)
{
    QFile device(file);
    if (!device.open(QIODevice::ReadOnly))
        throw RenderingFailure(
            QStringLiteral("cannot read the file: %1").arg(device.errorString()).toStdString());
    const auto container = Formats::walkInDesignContainer(device);
    if (!container)
        return container.failure();

    PreviewContent content;
    content.title = QFileInfo(file).fileName();
    content.kindName = file.endsWith(u".indt", Qt::CaseInsensitive)
        ? QStringLiteral("InDesign template")
        : QStringLiteral("InDesign document");
    content.spreadMode = SpreadMode(settings.inDesignSpreadMode);
    if (container->streamDamaged)
        content.notes.append(QStringLiteral("The document is damaged after its metadata"));
    if (container->xmp.isEmpty()) {
        content.notes.append(QStringLiteral("The document carries no metadata"));
        takePages(content, {}, settings);
        return content;
    }
    const auto xmp = Formats::parseXmpPacket(container->xmp);
    if (!xmp) {
        content.notes.append(QStringLiteral("The metadata cannot be read: %1").arg(xmp.reason()));
        takePages(content, {}, settings);
        return content;
    }
    if (!xmp->complete)
        content.notes.append(
            QStringLiteral("The metadata breaks off; what stands before is shown"));
    addXmpContent(content, *xmp, file, settings);
    return content;
}

std::unique_ptr<Previewer> createInDesignPreviewer()
{
    return std::make_unique<InDesignPreviewer>();
}

}
