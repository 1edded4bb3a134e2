// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Previewer.h"

namespace Preview {

// Swatch Exchange files: one page, the swatch sheet (an SVG picture), and the same swatches as
// the swatch panel. The thumbnail is the chips alone.
class SwatchExchangePreviewer : public Previewer {
public:
    Formats::ParseResult<PreviewContent> preview(
        const QString& file, const VTPreviewSettings& settings) override;
    Formats::ParseResult<QImage> thumbnail(
        const QString& file, int maxSize, const VTPreviewSettings& settings) override;
};

}
