// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewContent.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <vector>

namespace Preview::Kinds {

// Readers of the XML parts of an IDML package. Each reads what it can; when the XML breaks off,
// what came before is kept and *problem says why (left alone when the part is well-formed).

// Resources/Fonts.xml: every Font of every FontFamily.
std::vector<PreviewFont> idmlFonts(const QByteArray& xml, QString* problem = nullptr);
// Resources/Graphic.xml: the named, visible Color swatches, values scaled to PreviewSwatch's.
std::vector<PreviewSwatch> idmlColors(const QByteArray& xml, QString* problem = nullptr);
// The LinkResourceURI of every Link element, in any part (spreads and stories hold them).
QStringList idmlLinkUris(const QByteArray& xml, QString* problem = nullptr);

// "100 0 0 0" in the model's own units to PreviewSwatch's: CMYK percent, RGB 0..255, LAB as is.
PreviewSwatch idmlSwatch(
    const QString& name, const QString& model, const QString& space, const QString& colorValue);

// The word a font type is shown with: "OpenTypeCFF" is "OpenType CFF", "Type1" is "Type 1".
QString fontKindName(const QString& fontType);

}
