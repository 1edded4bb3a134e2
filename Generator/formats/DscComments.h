// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "EpsBinaryHeader.h"
#include "ParseResult.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace Formats {

struct DscBoundingBox {
    double left = 0;
    double bottom = 0;
    double right = 0;
    double top = 0;
    // "%%BoundingBox: 0 0 0 0", which some writers put when they do not know the box.
    bool isEmpty() const { return right <= left || top <= bottom; }
};

struct DscCustomColor {
    enum class Model { Cmyk, Rgb, Unspecified };
    QString name;
    Model model = Model::Unspecified;
    std::vector<double> values; // 0..1: four for CMYK, three for RGB, none when unspecified
};

// An EPSI preview: a bitmap in hexadecimal comment lines after the header.
struct DscPreview {
    int width = 0;
    int height = 0;
    int depth = 0;
    QByteArray data; // the decoded rows
};

struct DscDocument {
    std::optional<EpsBinaryHeader> binaryHeader;
    qsizetype postScriptOffset = 0; // where the PostScript starts in the buffer
    qsizetype postScriptLength = 0;
    QString versionLine; // the "%!PS-Adobe-3.0 EPSF-3.0" line
    bool encapsulated = false; // the version line names an EPSF version

    QString title;
    QString creator;
    std::optional<DscBoundingBox> boundingBox;
    std::optional<DscBoundingBox> hiResBoundingBox;
    std::optional<int> pages;
    QStringList documentFonts; // %%DocumentFonts
    QStringList neededFonts; // %%DocumentNeededFonts and the fonts of %%DocumentNeededResources
    QStringList
        suppliedFonts; // %%DocumentSuppliedFonts and the fonts of %%DocumentSuppliedResources
    // The procedure sets of %%DocumentNeededResources and %%DocumentSuppliedResources, each a
    // name (the version and revision that follow it are left out).
    QStringList neededProcSets;
    QStringList suppliedProcSets;
    std::vector<DscCustomColor> customColors;
    std::optional<DscPreview> preview;
    int nestedDocuments = 0; // %%BeginDocument sections directly inside this one
    // The document's own %%EOF was found (Illustrator may put private data after it); a file cut
    // short lacks it.
    bool reachesEndOfFile = false;

    // The box to draw: the high-resolution one, else the integer one, when not empty.
    std::optional<DscBoundingBox> usableBoundingBox() const;
    // Every font the comments name, each once, in the order first named.
    QStringList fonts() const;
    // The procedure sets the document needs but does not carry.
    QStringList missingProcSets() const;
};

// Reads the document structuring comments of PostScript or EPS, with or without the DOS binary
// header. Only the outer document's header and trailer comments count: the comments of
// documents embedded between %%BeginDocument and %%EndDocument are theirs, and %%BeginData and
// %%BeginBinary sections are skipped by their byte counts. A value of "(atend)" is taken from the
// trailer. Lines may end in CR, LF or CRLF.
ParseResult<DscDocument> parseDscComments(QByteArrayView bytes);

}
