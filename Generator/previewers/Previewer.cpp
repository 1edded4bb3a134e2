// SPDX-License-Identifier: GPL-3.0-or-later
#include "Previewer.h"

namespace Preview {

Formats::ParseResult<QImage> Previewer::thumbnail(
    const QString& file, int maxSize, const VTPreviewSettings& settings)
{
    VTPreviewSettings firstPage = settings;
    firstPage.previewMode = VTPreviewMode::FirstPage;
    auto content = preview(file, firstPage);
    if (!content)
        return content.failure();
    for (const PreviewPage& page : content->pages) {
        const QImage picture = page.picture();
        if (!picture.isNull())
            return fitWithin(picture, maxSize);
    }
    return Formats::fail(Formats::FormatError::UnsupportedVariant,
        QStringLiteral("the document has no page to draw a thumbnail of"));
}

QImage fitWithin(const QImage& image, int maxSize)
{
    if (image.isNull() || maxSize <= 0)
        return {};
    if (image.width() <= maxSize && image.height() <= maxSize)
        return image;
    return image.scaled(maxSize, maxSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

}
