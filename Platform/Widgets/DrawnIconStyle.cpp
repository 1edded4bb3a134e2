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
        const qreal side = qMin(rect.width(), rect.height());
        const QPointF origin = QRectF(rect).center() - QPointF(side, side) / 2;
        // In a unit box, the chevrons point right; a vertical bar's, with the axes swapped, down.
        const auto at = [&](qreal along, qreal across) {
            return origin
                + (m_orientation == Qt::Horizontal ? QPointF(along, across)
                                                   : QPointF(across, along))
                * side;
        };
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(
            QPen(colour, qMax<qreal>(1, side / 10), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        for (const qreal start : { 0.25, 0.5 }) {
            const QPointF chevron[] = { at(start, 0.3), at(start + 0.2, 0.5), at(start, 0.7) };
            painter->drawPolyline(chevron, 3);
        }
        painter->restore();
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
