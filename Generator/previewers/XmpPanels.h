// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewContent.h"
#include "XmpMetadata.h"

#include <QString>
#include <vector>

namespace Preview {

// The parts of a preview that a document's XMP provides.
std::vector<PreviewFont> fontsFromXmp(const Formats::XmpMetadata& xmp);
// Link paths as absolute paths where possible: file URLs become paths, and relative paths are
// taken from the document's folder.
std::vector<PreviewLink> linksFromXmp(const Formats::XmpMetadata& xmp, const QString& documentPath);
// Values scaled to the PreviewSwatch conventions: CMYK and gray from percent, RGB from 0..255.
std::vector<PreviewSwatchGroup> swatchGroupsFromXmp(const Formats::XmpMetadata& xmp);
// The page thumbnails when there are any, else the document thumbnail; undecodable ones skipped.
std::vector<PreviewPage> thumbnailPagesFromXmp(const Formats::XmpMetadata& xmp);

// Fonts, links, swatch groups and the creator fact, all at once.
void addXmpPanels(
    PreviewContent& content, const Formats::XmpMetadata& xmp, const QString& documentPath);

}
