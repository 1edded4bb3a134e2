// SPDX-License-Identifier: GPL-3.0-or-later
#include "DrawnIconStyle.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

namespace {

// Two chevrons pointing right, or down, drawn at whatever size and pixel ratio they are shown.
class ExtensionArrowEngine : public QIconEngine {
public:
    explicit ExtensionArrowEngine(Qt::Orientation orientation)
        : m_orientation(orientation)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const QPalette palette = QGuiApplication::palette();
        const QColor colour = palette.color(
            mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active, QPalette::ButtonText);
        const QRectF box(rect);
        // The chevrons point right across the box; a vertical bar's, with the axes swapped, down.
        const auto at = [&](qreal along, qreal across) {
            return m_orientation == Qt::Horizontal
                ? box.topLeft() + QPointF(along * box.width(), across * box.height())
                : box.topLeft() + QPointF(across * box.width(), along * box.height());
        };
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(colour, qMax<qreal>(1, qMin(box.width(), box.height()) / 10),
            Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        for (const qreal start : { 0.15, 0.5 }) {
            const QPointF chevron[] = { at(start, 0.25), at(start + 0.3, 0.5), at(start, 0.75) };
            painter->drawPolyline(chevron, 3);
        }
        painter->restore();
    }

    // Qt's own would paint on a pixmap it never cleared.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new ExtensionArrowEngine(m_orientation); }

private:
    const Qt::Orientation m_orientation;
};

}

QIcon DrawnIconStyle::standardIcon(
    StandardPixmap which, const QStyleOption* option, const QWidget* widget) const
{
    switch (which) {
    case SP_ToolBarHorizontalExtensionButton:
        return QIcon(new ExtensionArrowEngine(Qt::Horizontal));
    case SP_ToolBarVerticalExtensionButton:
        return QIcon(new ExtensionArrowEngine(Qt::Vertical));
    default:
        return QProxyStyle::standardIcon(which, option, widget);
    }
}
