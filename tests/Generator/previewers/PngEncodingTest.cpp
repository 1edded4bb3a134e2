// SPDX-License-Identifier: GPL-3.0-or-later
#include "PngEncoding.h"

#include <QColor>
#include <gtest/gtest.h>

namespace {

// Every pixel, its alpha and the resolution come back as they went in, read by Qt's own reader.
TEST(PngEncoding, WhatQtReadsBackIsThePicture)
{
    for (const QImage::Format format : { QImage::Format_RGB32, QImage::Format_ARGB32 }) {
        QImage picture(37, 5, format);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                picture.setPixelColor(x, y, QColor(x * 7, y * 50, 255 - x * 3, 255 - x * 6));
        }
        picture.setDotsPerMeterX(5669);
        picture.setDotsPerMeterY(2835);
        for (const int level : { 1, 9 }) {
            const QImage read = QImage::fromData(Preview::encodePng(picture, level), "PNG");
            ASSERT_EQ(read.size(), picture.size());
            EXPECT_EQ(read.hasAlphaChannel(), picture.hasAlphaChannel());
            EXPECT_EQ(read.convertToFormat(QImage::Format_ARGB32),
                picture.convertToFormat(QImage::Format_ARGB32));
            EXPECT_EQ(read.dotsPerMeterX(), 5669);
            EXPECT_EQ(read.dotsPerMeterY(), 2835);
        }
    }
    EXPECT_TRUE(Preview::encodePng(QImage()).isEmpty());
}

}
