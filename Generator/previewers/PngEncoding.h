// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>

namespace Preview {

// The picture as PNG, written by libpng itself: Qt's writer would first load every image format
// plugin of the system to ask whether one of them writes PNG better, which costs a preview more
// than drawing its first page. Level is zlib's, 1 (fastest) to 9 (smallest); 6 is its default.
// Empty for an empty picture.
QByteArray encodePng(const QImage& image, int level = 6);

}
