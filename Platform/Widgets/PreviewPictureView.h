// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QWidget>

// A picture shown whole in the middle of the widget, scaled down to fit but never up.
class PreviewPictureView : public QWidget {
    Q_OBJECT
public:
    explicit PreviewPictureView(QImage image, QWidget* parent = nullptr);
    const QImage& image() const { return m_image; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_image;
};
