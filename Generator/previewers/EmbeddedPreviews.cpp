// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPreviews.h"

#include <QByteArray>

namespace Preview {

QImage epsiPreviewImage(const Formats::DscPreview& preview)
{
    const int depth = preview.depth;
    if (preview.width <= 0 || preview.height <= 0 || preview.width > 8192 || preview.height > 8192
        || (depth != 1 && depth != 2 && depth != 4 && depth != 8))
        return {};
    const qsizetype rowBytes = (qsizetype(preview.width) * depth + 7) / 8;
    if (preview.data.size() < rowBytes * preview.height)
        return {};
    const int maxSample = (1 << depth) - 1;
    QImage image(preview.width, preview.height, QImage::Format_Grayscale8);
    for (int y = 0; y < preview.height; ++y) {
        const auto* row = reinterpret_cast<const uchar*>(preview.data.constData()) + y * rowBytes;
        uchar* out = image.scanLine(y);
        for (int x = 0; x < preview.width; ++x) {
            const qsizetype bit = qsizetype(x) * depth;
            const int sample = (row[bit / 8] >> (8 - depth - bit % 8)) & maxSample;
            out[x] = uchar(255 - sample * 255 / maxSample);
        }
    }
    return image;
}

QImage tiffPreviewImage(QByteArrayView file, const Formats::EpsBinaryHeader& header)
{
    const auto& tiff = header.tiff;
    if (!tiff.present() || qsizetype(tiff.offset) + qsizetype(tiff.length) > file.size())
        return {};
    return QImage::fromData(file.sliced(tiff.offset, tiff.length), "TIFF");
}

}
