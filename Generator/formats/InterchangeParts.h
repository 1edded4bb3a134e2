// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "XmpMetadata.h"

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace Formats {

struct InterchangeFont {
    QString postScriptName;
    QString family;
    QString style;
    QString type; // as written: "OpenTypeCFF", "TrueType", "Type1", ...
};

struct InterchangeColor {
    QString name;
    QString model; // "Process" or "Spot"
    QString space; // "CMYK", "RGB", "LAB", or the document's own word
    std::vector<double> values; // in the application's units: CMYK percent, RGB 0..255, LAB
};

// What the XML of an interchange document (INX or IDML) tells about it.
struct InterchangeParts {
    std::vector<InterchangeFont> fonts;
    std::vector<InterchangeColor> colors;
    QStringList linkUris; // as written, usually file: URLs
    std::optional<XmpMetadata> xmp;
    int spreadCount = 0;
    int pageCount = 0; // the pages of the spreads; 0 when not told
    // Parts that could not be read, one line each; what they held before the fault is kept.
    QStringList problems;
};

}
