// SPDX-License-Identifier: GPL-3.0-or-later
#include "QXAboutWindowBackgroundView.h"
#include "QXAboutWindowController.h"
#include "TestEnvironment.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

namespace {

// Runs showWindow() and does `action` once its modal run waits; whether the window was still
// visible right after. A guard closes the window should the action fail to, so that a broken
// window fails the test instead of hanging it.
bool visibleAfter(QXAboutWindowController& controller, const std::function<void()>& action)
{
    bool visible = true;
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, [&] { controller.window()->close(); });
    QTimer::singleShot(0, controller.window(), [&] {
        action();
        visible = controller.window()->isVisible();
        guard.start(5000);
    });
    controller.showWindow();
    return visible;
}

// One controller, one modal run per showing; a press closes it without waiting for the release.
TEST(AboutWindowTest, APressOrEscapeClosesTheWindowAndEndsTheModalRun)
{
    QXAboutWindowController controller;
    EXPECT_EQ(controller.versionLabel()->text(), "3.1.4 (v314)");
    EXPECT_FALSE(visibleAfter(controller, [&] {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
        QApplication::sendEvent(controller.window(), &key);
        EXPECT_TRUE(controller.window()->isVisible());
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(controller.window(), &escape);
    }));
    for (QWidget* target : { static_cast<QWidget*>(controller.backgroundView()),
             static_cast<QWidget*>(controller.versionLabel()) }) {
        EXPECT_FALSE(visibleAfter(controller, [&] {
            ASSERT_TRUE(controller.window()->isVisible());
            QMouseEvent press(QEvent::MouseButtonPress, QPoint(2, 2),
                target->mapToGlobal(QPoint(2, 2)), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(target, &press);
        }));
    }
}

QImage renderOf(QWidget* view)
{
    QImage image(view->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

TEST(AboutWindowTest, ThePictureIsDrawnUnscaledFromTheOrigin)
{
    // A picture smaller than the view: red with a blue square, transparent in its corner.
    QImage picture(100, 60, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    QPainter painter(&picture);
    painter.fillRect(QRect(10, 10, 10, 10), Qt::blue);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(QRect(90, 50, 10, 10), Qt::transparent);
    painter.end();
    const QString path = QDir(TestEnvironment::home()).filePath("background.png");
    ASSERT_TRUE(picture.save(path));

    QXAboutWindowBackgroundView view;
    view.resize(480, 300);
    view.setPicturePath(path);
    const QImage image = renderOf(&view);
    EXPECT_EQ(image.pixel(15, 15), qRgb(0, 0, 255));
    EXPECT_EQ(image.pixel(50, 40), qRgb(255, 0, 0));
    EXPECT_EQ(qAlpha(image.pixel(95, 55)), 0);
    EXPECT_EQ(qAlpha(image.pixel(150, 100)), 0) << "the picture must not be stretched";

    // Without a picture the view is see-through.
    view.setPicturePath(QDir(TestEnvironment::home()).filePath("missing.png"));
    EXPECT_EQ(qAlpha(renderOf(&view).pixel(15, 15)), 0);
}

}
