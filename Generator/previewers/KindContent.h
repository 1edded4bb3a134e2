// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewContent.h"
#include "VTPreviewSettings.h"
#include "XmpMetadata.h"

#include <QString>
#include <QStringList>
#include <vector>

namespace Preview {

// The note of a document that carries no picture of its pages.
QString noPagePreviewsNote();

// Puts the pages into content, at most settings.pageLimit() of them; the rest are counted in
// pagesLeftOut against pageCount (or the number of pages given, when pageCount is unknown).
void takePages(
    PreviewContent& content, std::vector<PreviewPage> pages, const VTPreviewSettings& settings);

// Adds links not yet listed (by path).
void addLinks(std::vector<PreviewLink>& links, const std::vector<PreviewLink>& more);

// The page thumbnails and panels of a document's XMP, with the page limit, spread mode and the
// note when there are no pictures.
void addXmpContent(PreviewContent& content, const Formats::XmpMetadata& xmp,
    const QString& documentPath, const VTPreviewSettings& settings);

}
