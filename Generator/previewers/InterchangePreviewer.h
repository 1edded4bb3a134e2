// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Previewer.h"

namespace Preview {

// INX documents and IDML packages: the page thumbnails of their metadata, the fonts and colours
// of their XML (the metadata's where the XML has none) and the links of both.
class InterchangePreviewer : public Previewer {
public:
    Formats::ParseResult<PreviewContent> preview(
        const QString& file, const VTPreviewSettings& settings) override;
};

}
