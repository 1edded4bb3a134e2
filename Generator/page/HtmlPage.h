// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewContent.h"
#include "VTPreviewSettings.h"

#include <QString>
#include <vector>

namespace Preview {

// The self-contained HTML page of a preview: inline style for light and dark themes, the title
// and facts, the pages, then the panels the settings ask for. pictureFiles[i] is the file name
// (relative to the page) of content.pages[i]'s picture, empty when it has none. Every document
// text is escaped; the only script is the loupe's, inline.
QString htmlPage(const PreviewContent& content, const VTPreviewSettings& settings,
    const std::vector<QString>& pictureFiles);

}
