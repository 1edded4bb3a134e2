// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ParseResult.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QImage>
#include <QSizeF>
#include <QStringList>
#include <vector>

namespace Preview::Kinds {

// A FreeHand document drawn by libfreehand as one SVG document per page. Bytes libfreehand does
// not take for FreeHand are not this kind; a document it takes but cannot read is damaged.
Formats::ParseResult<std::vector<QByteArray>> freeHandSvgPages(QByteArrayView bytes);

// The font families an SVG document names (font-family attributes and style properties), each
// once, in the order they first appear, without quotes.
QStringList svgFontFamilies(const QByteArray& svg);

// The size an SVG document gives itself, in points; empty when it gives none.
QSizeF svgSizePoints(const QByteArray& svg);

// Draws an SVG document on white, its longer side maxPixels at most (and at most twice its own
// size). Null when the document cannot be drawn.
QImage renderSvg(const QByteArray& svg, int maxPixels);

}
