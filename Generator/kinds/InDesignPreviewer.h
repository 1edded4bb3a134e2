// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Previewer.h"

namespace Preview::Kinds {

// InDesign documents and templates: the page thumbnails, fonts, swatches and links of the XMP
// packet the container holds, found by walking the container, never by scanning for text (the
// database pages may hold stale packets of earlier saves).
class InDesignPreviewer : public Previewer {
public:
    Formats::ParseResult<PreviewContent> preview(
        const QString& file, const PreviewSettings& settings) override;
};

}
