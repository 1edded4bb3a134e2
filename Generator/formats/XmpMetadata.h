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
    qsizetype packetOffset = 0; // where the packet that was read starts in the buffer
    // False when the packet breaks off or turns malformed: what stands before that point is read.
    bool complete = true;
    QString creatorTool;
    std::optional<int> pageCount;
    std::vector<XmpFont> fonts;
    std::vector<XmpSwatchGroup> swatchGroups;
    std::vector<XmpSwatch> colorants; // the process and spot inks the document uses
    std::vector<XmpLink> links;
    std::vector<XmpThumbnail> thumbnails; // the document thumbnail, then the page thumbnails
};

// Reads one packet (x:xmpmeta, or a bare rdf:RDF). Properties are found by namespace URI, so the
// older "xap" prefixes read the same as "xmp". A packet that breaks off after its RDF began is
// read as far as it goes and marked incomplete; one that never reaches its RDF is damaged.
ParseResult<XmpMetadata> parseXmpPacket(QByteArrayView packet);

// Finds the packets in a buffer and reads the last well-formed one: writers append the current
// packet after older ones, and a packet left half-written by an interrupted save comes before the
// one that replaced it. Packets are not merged, since the properties of an old one may no longer
// hold. When no packet is well-formed, the last one that can be read in part is returned,
// marked incomplete. No packet at all is "not this kind"; packets none of which holds any RDF
// are damaged.
ParseResult<XmpMetadata> extractXmp(QByteArrayView bytes);

}
