// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DscComments.h"
#include "EpsBinaryHeader.h"

#include <QByteArrayView>
#include <QImage>

namespace Preview {

// The EPSI bitmap as an image: rows of depth-bit samples, each row padded to a whole byte,
// a sample counting the ink (0 white, all ones black). Null when the data is too short.
QImage epsiPreviewImage(const Formats::DscPreview& preview);

// The TIFF preview of a DOS binary EPS. Null when there is none or it cannot be decoded (Qt
// reads TIFF through its image-format plug-in, which may be missing).
QImage tiffPreviewImage(QByteArrayView file, const Formats::EpsBinaryHeader& header);

}
