// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>

namespace Formats {

enum class FileKind {
    Unknown,
    IllustratorPdf, // PDF with Illustrator's private data
    IllustratorPostScript, // the PostScript documents of older Illustrator versions
    Eps, // Encapsulated PostScript, with or without the DOS binary header
    InDesign, // documents and templates
    InDesignInterchange, // INX
    Idml,
    FreeHand,
    SwatchExchange,
};

// A stable English name for messages and tests, e.g. "InDesign".
QString fileKindName(FileKind kind);

// How many leading bytes sniffFileKind wants; fewer work, with less certainty for PDF.
constexpr qsizetype FileKindHeadSize = 64 * 1024;

// Tells the kind of a file from its first bytes, using its name only where the bytes leave a
// choice: a PostScript file with Illustrator as its creator is an Illustrator document when
// named .ai or .ait and an EPS otherwise, and a PDF whose first bytes do not show Illustrator
// is taken as Illustrator's when named .ai or .ait.
FileKind sniffFileKind(QByteArrayView head, const QString& fileName);

}
