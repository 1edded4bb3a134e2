// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Previewer.h"

namespace Preview {

// Illustrator documents with PDF content (.ai, .ait) and PDFs saved by Illustrator: every
// artboard up to the page limit drawn with poppler, fonts, links and swatches from the XMP (the
// PDF's fonts when the XMP names none). A document saved without PDF content shows its XMP
// thumbnail instead.
class IllustratorPdfPreviewer : public Previewer {
public:
    Formats::ParseResult<PreviewContent> preview(
        const QString& file, const VTPreviewSettings& settings) override;
    Formats::ParseResult<QImage> thumbnail(
        const QString& file, int maxSize, const VTPreviewSettings& settings) override;
};

}
