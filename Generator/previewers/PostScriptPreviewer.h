// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Previewer.h"

namespace Preview {

// EPS files (with or without the DOS binary header) and the PostScript documents of older
// Illustrator versions: the PostScript drawn by Ghostscript, or the preview picture embedded
// in the file (TIFF, EPSI, XMP thumbnail) for files past the size threshold or that
// Ghostscript cannot draw. Fonts come from the comments, swatches from the custom colours
// and the XMP.
class PostScriptPreviewer : public Previewer {
public:
    enum class Kind { Eps, Illustrator };
    explicit PostScriptPreviewer(Kind kind);

    Formats::ParseResult<PreviewContent> preview(
        const QString& file, const VTPreviewSettings& settings) override;
    Formats::ParseResult<QImage> thumbnail(
        const QString& file, int maxSize, const VTPreviewSettings& settings) override;

private:
    Kind m_kind;
};

}
