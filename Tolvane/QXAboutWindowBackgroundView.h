// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPixmap>
#include <QWidget>

// The face of the about window: the picture "AboutWindowBackground.png" of the application's
// resources, drawn unscaled from the top left corner over a transparent background. A press of
// any mouse button closes the window at once.
class QXAboutWindowBackgroundView : public QWidget {
    Q_OBJECT
public:
    explicit QXAboutWindowBackgroundView(QWidget* parent = nullptr);

    // Where the picture comes from; a missing or unreadable file draws nothing.
    QString picturePath() const { return m_picturePath; }
    void setPicturePath(const QString& path);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QString m_picturePath;
    QPixmap m_picture;
};
