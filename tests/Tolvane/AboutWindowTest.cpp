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
#include <QScreen>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

namespace {

// Runs showWindow() and does `action` once its modal run waits. A guard closes the window should
// the action fail to, so that a broken window fails the test instead of hanging it.
struct ModalRun {
    bool actionRan = false;
    bool visibleAfterAction = true;
    bool guardFired = false;
};

ModalRun runModally(QXAboutWindowController& controller, const std::function<void()>& action)
{
    ModalRun run;
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, [&] {
        run.guardFired = true;
        controller.window()->close();
    });
    QTimer::singleShot(0, controller.window(), [&] {
        action();
        run.actionRan = true;
        run.visibleAfterAction = controller.window()->isVisible();
        guard.start(5000);
    });
    controller.showWindow();
    return run;
}

void press(QWidget* widget, QPoint at)
{
    QMouseEvent event(QEvent::MouseButtonPress, at, widget->mapToGlobal(at), Qt::LeftButton,
        Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

QImage renderOf(QWidget* view)
{
    QImage image(view->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

TEST(AboutWindowTest, TheLabelShowsTheShortAndTheBuildVersion)
{
    QXAboutWindowController controller;
    EXPECT_EQ(controller.versionLabel()->text(), "3.1.4 (v314)");
}

TEST(AboutWindowTest, TheWindowIsFramelessSeeThroughModalAndCentred)
{
    QXAboutWindowController controller;
    QWidget* window = controller.window();
    window->show();
    EXPECT_TRUE(window->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(window->testAttribute(Qt::WA_TranslucentBackground));
    EXPECT_EQ(window->windowModality(), Qt::ApplicationModal);
    EXPECT_EQ(controller.backgroundView()->geometry(), window->rect());
    ASSERT_NE(window->screen(), nullptr);
    const QPoint offset
        = window->frameGeometry().center() - window->screen()->availableGeometry().center();
    EXPECT_LE(offset.manhattanLength(), 2);
}

TEST(AboutWindowTest, APressClosesTheWindowAtOnceAndEndsTheModalRun)
{
    QXAboutWindowController controller;
    const struct {
        const char* name;
        QWidget* target;
        QPoint at;
    } cases[] = {
        { "a corner of the picture", controller.backgroundView(), QPoint(3, 3) },
        { "the version label", controller.versionLabel(), QPoint(2, 2) },
    };
    // One controller, one modal run per showing.
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const ModalRun run = runModally(controller, [&] {
            ASSERT_TRUE(controller.window()->isVisible());
            press(c.target, c.at);
        });
        EXPECT_TRUE(run.actionRan);
        EXPECT_FALSE(run.visibleAfterAction) << "closed without waiting for the release";
        EXPECT_FALSE(run.guardFired);
        EXPECT_FALSE(controller.window()->isVisible());
    }
}

TEST(AboutWindowTest, EscapeClosesTheWindowAndOtherKeysDoNot)
{
    QXAboutWindowController controller;
    const ModalRun run = runModally(controller, [&] {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
        QApplication::sendEvent(controller.window(), &key);
        EXPECT_TRUE(controller.window()->isVisible());
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(controller.window(), &escape);
    });
    EXPECT_TRUE(run.actionRan);
    EXPECT_FALSE(run.visibleAfterAction);
    EXPECT_FALSE(run.guardFired);
}

TEST(AboutWindowTest, WithoutAPictureOnlyTheLabelShows)
{
    // The test bundle has no such picture among its resources.
    QXAboutWindowController controller;
    QXAboutWindowBackgroundView* view = controller.backgroundView();
    EXPECT_TRUE(view->picturePath().isEmpty());
    controller.window()->show();
    const QImage image = renderOf(view);
    for (const QPoint at : { QPoint(0, 0), QPoint(240, 150), QPoint(470, 290) })
        EXPECT_EQ(qAlpha(image.pixel(at)), 0) << at.x() << "," << at.y();

    const QRect label = controller.versionLabel()->geometry();
    ASSERT_FALSE(label.isEmpty());
    bool labelShows = false;
    for (int y = label.top(); y <= label.bottom() && !labelShows; ++y) {
        for (int x = label.left(); x <= label.right() && !labelShows; ++x)
            labelShows = qAlpha(image.pixel(x, y)) != 0;
    }
    EXPECT_TRUE(labelShows);
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

    view.setPicturePath(QDir(TestEnvironment::home()).filePath("missing.png"));
    EXPECT_EQ(qAlpha(renderOf(&view).pixel(15, 15)), 0);
}

}
