// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Previewer.h"

namespace Preview {

// FreeHand documents, drawn page by page by libfreehand (as SVG) and QtSvg; the fonts are the
// families the drawing names.
class FreeHandPreviewer : public Previewer {
public:
    Formats::ParseResult<PreviewContent> preview(
        const QString& file, const VTPreviewSettings& settings) override;
};

}
