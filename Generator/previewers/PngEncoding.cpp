// SPDX-License-Identifier: GPL-3.0-or-later
#include "PngEncoding.h"

#include <csetjmp>
#include <png.h>

namespace Preview {

namespace {

    void append(png_structp writer, png_bytep data, png_size_t size)
    {
        static_cast<QByteArray*>(png_get_io_ptr(writer))
            ->append(reinterpret_cast<const char*>(data), qsizetype(size));
    }

}

QByteArray encodePng(const QImage& image, int level)
{
    if (image.isNull())
        return {};
    const bool alpha = image.hasAlphaChannel();
    const QImage rows
        = image.convertToFormat(alpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    QByteArray png;
    png_structp writer = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = writer ? png_create_info_struct(writer) : nullptr;
    if (!info || setjmp(png_jmpbuf(writer))) {
        png_destroy_write_struct(&writer, &info);
        return {};
    }
    png_set_write_fn(writer, &png, append, nullptr);
    png_set_compression_level(writer, level);
    png_set_IHDR(writer, info, png_uint_32(rows.width()), png_uint_32(rows.height()), 8,
        alpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
        PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (rows.dotsPerMeterX() > 0 && rows.dotsPerMeterY() > 0)
        png_set_pHYs(writer, info, png_uint_32(rows.dotsPerMeterX()),
            png_uint_32(rows.dotsPerMeterY()), PNG_RESOLUTION_METER);
    png_write_info(writer, info);
    for (int y = 0; y < rows.height(); ++y)
        png_write_row(writer, rows.constScanLine(y));
    png_write_end(writer, info);
    png_destroy_write_struct(&writer, &info);
    return png;
}

}
