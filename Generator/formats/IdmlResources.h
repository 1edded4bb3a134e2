// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "InterchangeParts.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <vector>

namespace Formats {

// Readers of the XML parts of an IDML package. Each reads what it can; when the XML breaks off,
// what came before is kept and *problem says why (left alone when the part is well-formed).

// Resources/Fonts.xml: every Font of every FontFamily.
std::vector<InterchangeFont> idmlFonts(const QByteArray& xml, QString* problem = nullptr);
// Resources/Graphic.xml: the named, visible Color swatches.
std::vector<InterchangeColor> idmlColors(const QByteArray& xml, QString* problem = nullptr);
// Spreads/*.xml: the pages of the spread.
int idmlPageCount(const QByteArray& xml, QString* problem = nullptr);
// The LinkResourceURI of every Link element, in any part (spreads and stories hold them).
QStringList idmlLinkUris(const QByteArray& xml, QString* problem = nullptr);

// "100 0 0 0": the numbers up to the first that is not one.
std::vector<double> colorValues(const QString& text);

}
