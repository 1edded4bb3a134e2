// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSizeF>
#include <QStringList>
#include <vector>

namespace Preview {

// The font families an SVG document names (font-family attributes and style properties), each
// once, in the order they first appear, without quotes.
QStringList svgFontFamilies(const QByteArray& svg);

// The size an SVG document gives itself, in points; empty when it gives none.
QSizeF svgSizePoints(const QByteArray& svg);

// Draws an SVG document on white, its longer side maxPixels at most (and at most twice its own
// size). Null when the document cannot be drawn.
QImage renderSvg(const QByteArray& svg, int maxPixels);

}
