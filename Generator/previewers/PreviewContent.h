// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "VTPreviewSettings.h"

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <vector>

namespace Preview {

// One page (artboard, spread page, or the embedded preview picture) of a preview.
struct PreviewPage {
    // The picture, either drawn (image) or already encoded as found in the document or as an
    // external renderer wrote it (encoded + encodedFormat, e.g. "png" or "jpg"): encoded pictures
    // are written to the output folder as they are, without decoding and encoding again.
    QImage image;
    QByteArray encoded;
    QString encodedFormat;

    QString label; // "Page 3", "Artboard 2", "Embedded preview"
    int pageNumber = 0; // the document's page it shows, from 1; 0 when not told
    QSizeF sizePoints; // the page's own size in points; empty when unknown
    // Pages with the same number >= 0 form one spread of the document; -1: a page on its own.
    // They are set side by side only when PreviewContent::spreadMode is Spreads.
    int spread = -1;

    bool hasPicture() const { return !image.isNull() || !encoded.isEmpty(); }
    // The picture as an image, decoding the encoded form when needed (null when it cannot).
    QImage picture() const;
};

struct PreviewFont {
    QString name; // the PostScript name
    QString family;
    QString style;
    QString kind; // "Type 1", "TrueType", "OpenType CFF", ...
    QString fileName; // the font file the document names
    // The installed files that provide the font. Previewers leave this empty: the generator
    // looks every font up with fontconfig (FontLookup.h) before the page is written.
    QStringList installedFiles;

    bool installed() const { return !installedFiles.isEmpty(); }
};

struct PreviewLink {
    QString path; // absolute where the document gives it so
    bool exists = false;
};

struct PreviewSwatch {
    QString name;
    // "CMYK" (values 0..1), "RGB" (0..1), "LAB" (L 0..100, a and b -128..127),
    // "Gray" (one value 0..1, the amount of black: 0 white, 1 black), or the document's own word
    // for another model (values as found, shown as numbers only).
    QString model;
    std::vector<double> values;
    bool global = false;
    bool spot = false;
    bool process = false;
    // The colour of the chip; left invalid, it is computed from model and values
    // (SwatchColor.h), and a swatch of an unknown model gets no chip colour.
    QColor display;
};

struct PreviewSwatchGroup {
    QString name; // empty for the swatches outside any group
    std::vector<PreviewSwatch> swatches;
};

struct PreviewFact {
    QString label; // "Size", "Creator", "Pages", ...
    QString value;
};

// What a previewer makes of a document: everything the HTML page shows, nothing about HTML.
// All texts are plain text as found in the document; the page escapes them.
struct PreviewContent {
    QString title; // usually the file name
    QString kindName; // "Illustrator document", "Encapsulated PostScript", ...
    std::vector<PreviewFact> facts;

    std::vector<PreviewPage> pages; // the pages drawn, in order
    int pageCount = 0; // pages in the document (0: unknown or not paged)
    int pagesLeftOut = 0; // pages not drawn because of the page limit
    VTSpreadMode spreadMode = VTSpreadMode::SinglePages;

    // Panels. A previewer fills what the document has; the settings decide what is shown.
    std::vector<PreviewFont> fonts;
    std::vector<PreviewLink> links;
    std::vector<PreviewSwatchGroup> swatchGroups;

    // Short lines about the preview itself ("Shown: the preview picture embedded in the file").
    QStringList notes;
};

}
