// SPDX-License-Identifier: GPL-3.0-or-later
// Draws Tolvane/Resources/AboutWindowBackground.png, the face of the about window: a 480x300
// card with rounded corners, transparent outside them, with the product name on it. The version
// label is laid over its lower part at run time, so that part is left plain.
//
// Build and run once when the picture should change, then commit the picture:
//   g++ -std=c++20 -fPIC scripts/make-about-background.cpp $(pkg-config --cflags --libs Qt6Gui) \
//       -o /tmp/make-about-background
//   QT_QPA_PLATFORM=offscreen /tmp/make-about-background
//   Tolvane/Resources/AboutWindowBackground.png
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <cstdio>

namespace {

constexpr int width = 480;
constexpr int height = 300;
constexpr qreal cornerRadius = 22;

// Three sheets fanned out behind the name, like the pages of a document.
void drawSheets(QPainter& painter)
{
    painter.save();
    painter.translate(width * 0.5, height * 0.44);
    for (int sheet = 0; sheet < 3; ++sheet) {
        painter.save();
        painter.rotate(-12 + sheet * 12);
        const QRectF page(-58, -78, 116, 156);
        painter.setPen(QPen(QColor(255, 255, 255, 46), 1.2));
        painter.setBrush(QColor(255, 255, 255, 14 + sheet * 6));
        painter.drawRoundedRect(page, 6, 6);
        painter.restore();
    }
    painter.restore();
}

QImage drawBackground()
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);

    QPainterPath card;
    card.addRoundedRect(QRectF(0.5, 0.5, width - 1, height - 1), cornerRadius, cornerRadius);

    QLinearGradient base(0, 0, width, height);
    base.setColorAt(0, QColor(0x1c, 0x27, 0x4a));
    base.setColorAt(1, QColor(0x0b, 0x55, 0x63));
    painter.fillPath(card, base);

    // A soft light from the upper left.
    QRadialGradient glow(width * 0.28, height * 0.2, width * 0.6);
    glow.setColorAt(0, QColor(255, 255, 255, 40));
    glow.setColorAt(1, QColor(255, 255, 255, 0));
    painter.fillPath(card, glow);

    painter.setClipPath(card);
    drawSheets(painter);
    painter.setClipping(false);

    QFont name(QStringLiteral("DejaVu Sans"));
    name.setPixelSize(50);
    name.setBold(true);
    name.setLetterSpacing(QFont::AbsoluteSpacing, 1.5);
    painter.setFont(name);
    painter.setPen(QColor(0, 0, 0, 70));
    painter.drawText(
        QRectF(0, 92, width, 70).translated(0, 2), Qt::AlignCenter, QStringLiteral("Tolvane"));
    painter.setPen(Qt::white);
    painter.drawText(QRectF(0, 92, width, 70), Qt::AlignCenter, QStringLiteral("Tolvane"));

    QFont tagline(QStringLiteral("DejaVu Sans"));
    tagline.setPixelSize(15);
    painter.setFont(tagline);
    painter.setPen(QColor(255, 255, 255, 200));
    painter.drawText(
        QRectF(0, 160, width, 24), Qt::AlignCenter, QStringLiteral("Design files at a glance"));

    painter.setPen(QPen(QColor(255, 255, 255, 50), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(card);
    return image;
}

}

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUTPUT.png\n", argv[0]);
        return 2;
    }
    if (!drawBackground().save(QString::fromLocal8Bit(argv[1]), "PNG")) {
        std::fprintf(stderr, "could not write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
