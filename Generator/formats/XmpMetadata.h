// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ParseResult.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <optional>
#include <vector>

namespace Formats {

struct XmpFont {
    QString fontName; // the PostScript name; empty when the document lacks the font
    QString fontFamily;
    QString fontFace;
    QString fontType;
    QString fontFileName;
    QString versionString;
    bool composite = false;
};

struct XmpColorComponent {
    QString name; // as in the metadata: cyan, magenta, yellow, black, red, green, blue, L, A, B,
                  // tint, gray
    double value = 0;
};

struct XmpSwatch {
    QString name;
    QString mode; // CMYK, RGB, LAB, GRAY, ...
    QString type; // PROCESS or SPOT, in the writer's capitalisation
    std::vector<XmpColorComponent> components; // in the order of the list above

    std::optional<double> component(QStringView componentName) const;
};

struct XmpSwatchGroup {
    QString name;
    int groupType = 0;
    std::vector<XmpSwatch> swatches;
};

struct XmpLink {
    QString filePath;
    QString linkForm;
    QString documentId;
    QString instanceId;
};

struct XmpThumbnail {
    int pageNumber = 0; // 0 for the document's own thumbnail, else the page it shows
    int width = 0;
    int height = 0;
    QString format; // JPEG for every writer we know
    QByteArray image; // decoded from base64
};

struct XmpMetadata {
    QString creatorTool;
    std::optional<int> pageCount;
    std::vector<XmpFont> fonts;
    std::vector<XmpSwatchGroup> swatchGroups; // Illustrator's xmpTPg:SwatchGroups
    std::vector<XmpSwatch> colorants; // the inks in use; InDesign's swatches (xmpTPg:Colorants)
    std::vector<XmpLink> links;
    std::vector<XmpThumbnail> thumbnails; // the document thumbnail, then the page thumbnails
};

// XMP is read through exempi, the format owner's toolkit: its parser reads a packet into
// properties whatever the RDF spelling, and its file handlers find the document's own packet in
// PDF, PostScript and EPS (the DOS binary form too) and InDesign files, not the packets of placed
// images. Texts come out as the packet's encoding says (UTF-8 for every writer we know).

// Reads one packet (x:xmpmeta, or a bare rdf:RDF, with or without the packet wrapper). A packet
// exempi cannot parse is damaged.
ParseResult<XmpMetadata> parseXmpPacket(QByteArrayView packet);

// The document's packet as the file handler for its format finds it, or the packet found by
// scanning a file of a format exempi has no handler for. No packet is "not this kind"; one that
// cannot be parsed is damaged.
ParseResult<XmpMetadata> readXmpOfFile(const QString& path);

}
