// SPDX-License-Identifier: GPL-3.0-or-later
// The application menu's about window.
#include "TLAppDelegate.h"
#include "TestEnvironment.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

// Each showing is a modal window of its own that comes to the front; the one before is gone by
// then, so there is never a second about window on the screen. Escape closes it and other keys do
// not; a press anywhere closes it at once, without waiting for the release.
TEST(MenuActions, TheAboutWindowClosesOnEscapeOrAPressAndIsOneWindowAtATime)
{
    TLAppDelegate delegate;
    QList<QPointer<QWidget>> shown;
    const std::function<void(QWidget*)> closers[] = {
        [](QWidget* window) {
            QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
            QApplication::sendEvent(window, &key);
            EXPECT_TRUE(window->isVisible());
            QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            QApplication::sendEvent(window, &escape);
        },
        [](QWidget* window) {
            QMouseEvent press(QEvent::MouseButtonPress, QPoint(2, 2),
                window->mapToGlobal(QPoint(2, 2)), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(window->findChild<QLabel*>("versionLabel"), &press);
        },
    };
    for (const auto& close : closers) {
        QTimer::singleShot(0, [&] {
            QWidget* window = QApplication::activeModalWidget();
            int visible = 0;
            for (QWidget* widget : QApplication::topLevelWidgets())
                visible += widget->isVisible();
            EXPECT_EQ(visible, 1);
            if (!window) {
                ADD_FAILURE() << "no modal window";
                return QApplication::closeAllWindows();
            }
            EXPECT_EQ(window->findChild<QLabel*>("versionLabel")->text(), "2.5 (v250)");
            EXPECT_TRUE(
                TestEnvironment::waitUntil([window] { return window->isActiveWindow(); }, 10000));
            shown.append(window);
            close(window);
            EXPECT_FALSE(window->isVisible());
            window->close();
        });
        delegate.showAboutWindow();
    }
    ASSERT_EQ(shown.size(), 2);
    for (const QPointer<QWidget>& window : shown)
        EXPECT_TRUE(window.isNull()) << "a window outlived its showing";
}

}
