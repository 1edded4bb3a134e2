// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewContent.h"
#include "VTPreviewSettings.h"

#include <QString>

namespace Preview {

// Writes a preview into a folder: the page pictures (page-1.png, page-2.jpg, ...) and
// index.html linking them by relative names. The folder is made when missing; every file is
// written to a temporary name inside it and renamed, so a reader never sees half a page.
// Returns an empty text, or why it failed.
QString writePreview(
    const PreviewContent& content, const VTPreviewSettings& settings, const QString& folder);

}
