// SPDX-License-Identifier: GPL-3.0-or-later
#include "QXAboutWindowBackgroundView.h"

#include "Bundle.h"

#include <QPaintEvent>
#include <QPainter>

QXAboutWindowBackgroundView::QXAboutWindowBackgroundView(QWidget* parent)
    : QWidget(parent)
{
    // Not opaque: what the picture leaves out stays see-through.
    setAttribute(Qt::WA_TranslucentBackground);
    setAutoFillBackground(false);
    setPicturePath(Bundle::mainBundle().pathForResource(
        QStringLiteral("AboutWindowBackground"), QStringLiteral("png")));
}

void QXAboutWindowBackgroundView::setPicturePath(const QString& path)
{
    m_picturePath = path;
    m_picture = path.isEmpty() ? QPixmap() : QPixmap(path);
    update();
}

void QXAboutWindowBackgroundView::paintEvent(QPaintEvent* event)
{
    QWidget::paintEvent(event);
    if (m_picture.isNull())
        return;
    // The picture and the view share one coordinate space: the dirty part of the view shows the
    // same part of the picture, unscaled.
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setOpacity(1.0);
    const QRect area = event->rect();
    painter.drawPixmap(area, m_picture, area);
}

void QXAboutWindowBackgroundView::mousePressEvent(QMouseEvent* event)
{
    QWidget::mousePressEvent(event);
    window()->close();
}
