// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSAlert.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

// Runs an action on the modal alert once it is up (a test that never shows one hangs until the
// test's own time limit), and notes its title and the buttons' titles from left to right.
class AlertDriver {
public:
    explicit AlertDriver(std::function<void(QMessageBox*)> action)
    {
        QTimer::singleShot(0, [this, action] { poll(action); });
    }

    QStringList titlesLeftToRight;
    QString windowTitle;

private:
    void poll(std::function<void(QMessageBox*)> action)
    {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || !box->isVisible()) {
            QTimer::singleShot(10, [this, action] { poll(action); });
            return;
        }
        windowTitle = box->windowTitle();
        QList<QAbstractButton*> buttons = box->buttons();
        std::sort(buttons.begin(), buttons.end(), [](QAbstractButton* a, QAbstractButton* b) {
            return a->mapToGlobal(QPoint()).x() < b->mapToGlobal(QPoint()).x();
        });
        for (QAbstractButton* button : buttons)
            titlesLeftToRight << button->text();
        action(box);
    }
};

// The first given stands rightmost, as on the desktops that put the default last; Escape presses
// the alternate button.
TEST(ClassicAlert, ReturnsTheResultOfThePressedButton)
{
    QApplication::setApplicationDisplayName(QStringLiteral("Tolvane"));
    auto alert = NSAlert::alertWithMessageText(QStringLiteral("Save?"), QStringLiteral("Save"),
        QStringLiteral("Cancel"), QStringLiteral("Don't Save"), QStringLiteral("Or not."));
    AlertDriver driver([](QMessageBox* box) {
        for (QAbstractButton* button : box->buttons()) {
            if (button->text() == QStringLiteral("Don't Save"))
                return button->click();
        }
        ADD_FAILURE() << "no button Don't Save";
        box->buttons().first()->click();
    });
    EXPECT_EQ(alert->runModal(), NSAlertOtherReturn);
    EXPECT_EQ(driver.titlesLeftToRight, QStringList({ "Don't Save", "Cancel", "Save" }));
    EXPECT_EQ(driver.windowTitle, QStringLiteral("Tolvane"));

    AlertDriver escape([](QMessageBox* box) { QTest::keyClick(box, Qt::Key_Escape); });
    EXPECT_EQ(alert->runModal(), NSAlertAlternateReturn);
}

}
