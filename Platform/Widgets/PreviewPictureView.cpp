// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewPictureView.h"

#include <QPainter>

PreviewPictureView::PreviewPictureView(QImage image, QWidget* parent)
    : QWidget(parent)
    , m_image(std::move(image))
{
}

void PreviewPictureView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QSize size = m_image.size();
    if (size.width() > width() || size.height() > height())
        size.scale(this->size(), Qt::KeepAspectRatio);
    QRect target(QPoint(), size);
    target.moveCenter(rect().center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, m_image);
}
