// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewContent.h"
#include "SwatchExchange.h"

#include <QByteArray>
#include <QImage>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <vector>

namespace Preview {

// A Swatch Exchange swatch in the conventions of the swatch panel: CMYK, RGB and gray 0..1 (gray
// as the amount of black, where the file stores the lightness), L 0..100 with a and b as stored.
PreviewSwatch previewSwatch(const Formats::AseSwatch& swatch);

// The panel's groups: the loose swatches first (a group without a name, only when there are
// any), then every group in file order, nested ones after their parent and named with its path
// ("Brand / Accents"); empty groups are kept.
std::vector<PreviewSwatchGroup> swatchGroups(const Formats::AseDocument& document);

// The lines under a chip: the model with the swatch's marks ("CMYK · Global", "RGB · Spot"),
// then its values ("C 10% M 20% Y 30% K 0%", "R 255 G 128 B 0 · #FF8000", "L 50 a 20 b -30",
// "Gray 40%"; the numbers as stored for a model we do not know).
QStringList swatchDescription(const PreviewSwatch& swatch);

struct SwatchSheet {
    QByteArray svg; // a standalone SVG document
    QSizeF size; // in CSS pixels
};

// The page of a Swatch Exchange file: each group under its name, nested groups indented, each
// swatch a chip with its name and description; "No swatches" in a group that holds none. After
// maxChips chips and group headings the sheet ends with a line that counts the swatches left out
// (the panel lists them all): a file of thousands of swatches would make a page no screen shows.
SwatchSheet drawSwatchSheet(
    const Formats::AseDocument& document, const QString& title, int maxChips = 500);

// A thumbnail: the chips alone, in file order, in a square grid; no text, so it reads at any size.
// Null when the file holds no swatch.
QImage drawSwatchMosaic(const Formats::AseDocument& document, int size);

}
