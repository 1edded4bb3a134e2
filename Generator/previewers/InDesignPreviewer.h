// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Previewer.h"

namespace Preview {

// InDesign documents and templates: the page thumbnails, fonts, swatches and links of the XMP
// packet that exempi's InDesign handler finds by the container's structure, not by scanning for
// text (the database pages may hold stale packets of earlier saves).
class InDesignPreviewer : public Previewer {
public:
    Formats::ParseResult<PreviewContent> preview(
        const QString& file, const VTPreviewSettings& settings) override;
};

}
