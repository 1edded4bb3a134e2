// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSAlert.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

// Presses a key or clicks a button of the modal alert once it is up, and notes the buttons'
// titles from left to right.
class AlertDriver {
public:
    void clickWhenShown(const QString& title)
    {
        act([title](QMessageBox* box) { clickButton(box, title); });
    }
    void pressWhenShown(Qt::Key key)
    {
        act([key](QMessageBox* box) { QTest::keyClick(box, key); });
    }
    // Runs the action on the alert once it is up; a test that never shows one hangs until the
    // test's own time limit.
    void act(std::function<void(QMessageBox*)> action)
    {
        QTimer::singleShot(0, [this, action] { poll(action); });
    }

    QStringList titlesLeftToRight;
    QString windowTitle;
    bool shown = false;

private:
    static void clickButton(QMessageBox* box, const QString& title)
    {
        for (QAbstractButton* button : box->buttons()) {
            if (button->text() == title)
                return button->click();
        }
        ADD_FAILURE() << "no button " << title.toStdString();
        box->buttons().first()->click();
    }

    void poll(std::function<void(QMessageBox*)> action)
    {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || !box->isVisible()) {
            QTimer::singleShot(10, [this, action] { poll(action); });
            return;
        }
        shown = true;
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

// The first given stands rightmost, as on the desktops that put the default last; a null title
// leaves its button out, and with no title at all there is an OK.
TEST(ClassicAlert, ReturnsTheResultOfThePressedButton)
{
    auto alert = NSAlert::alertWithMessageText(QStringLiteral("Save?"), QStringLiteral("Save"),
        QStringLiteral("Cancel"), QStringLiteral("Don't Save"), QStringLiteral("Or not."));
    AlertDriver driver;
    driver.clickWhenShown(QStringLiteral("Don't Save"));
    EXPECT_EQ(alert->runModal(), NSAlertOtherReturn);
    EXPECT_EQ(driver.titlesLeftToRight,
        (QStringList {
            QStringLiteral("Don't Save"), QStringLiteral("Cancel"), QStringLiteral("Save") }));

    auto withOther = NSAlert::alertWithMessageText(
        QStringLiteral("?"), QStringLiteral("Yes"), QString(), QStringLiteral("Later"), QString());
    AlertDriver otherDriver;
    otherDriver.clickWhenShown(QStringLiteral("Later"));
    EXPECT_EQ(withOther->runModal(), NSAlertOtherReturn);
    EXPECT_EQ(otherDriver.titlesLeftToRight,
        (QStringList { QStringLiteral("Later"), QStringLiteral("Yes") }));

    auto alone = NSAlert::alertWithMessageText(
        QStringLiteral("Done"), QString(), QString(), QString(), QString());
    AlertDriver aloneDriver;
    aloneDriver.pressWhenShown(Qt::Key_Return);
    EXPECT_EQ(alone->runModal(), NSAlertDefaultReturn);
    EXPECT_EQ(aloneDriver.titlesLeftToRight, QStringList { QStringLiteral("OK") });
}

TEST(ClassicAlert, IsTitledWithTheApplicationAndEscapePressesTheAlternate)
{
    QApplication::setApplicationDisplayName(QStringLiteral("Tolvane"));
    auto alert = NSAlert::alertWithMessageText(QStringLiteral("This version is incompatible"),
        QStringLiteral("Check for Update"), QStringLiteral("Cancel"), QString(),
        QStringLiteral("Visit our website."));
    AlertDriver driver;
    driver.pressWhenShown(Qt::Key_Escape);
    EXPECT_EQ(alert->runModal(), NSAlertAlternateReturn);
    EXPECT_EQ(driver.windowTitle, QStringLiteral("Tolvane"));
    EXPECT_EQ(alert->window()->defaultButton(), alert->buttons().at(0));
}

TEST(ModernAlert, NumbersTheButtonsFromAThousandInTheOrderAdded)
{
    NSAlert alert;
    alert.setMessageText(QStringLiteral("Move to Applications folder?"));
    alert.addButtonWithTitle(QStringLiteral("Move to Applications Folder"));
    alert.addButtonWithTitle(QStringLiteral("Do Not Move"));
    alert.addButtonWithTitle(QStringLiteral("Help"));
    AlertDriver driver;
    driver.clickWhenShown(QStringLiteral("Help"));
    EXPECT_EQ(alert.runModal(), NSAlertThirdButtonReturn);
    EXPECT_EQ(driver.titlesLeftToRight,
        (QStringList { QStringLiteral("Help"), QStringLiteral("Do Not Move"),
            QStringLiteral("Move to Applications Folder") }));
}

TEST(ModernAlert, EscapePressesTheCancelButtonOnly)
{
    NSAlert alert;
    alert.addButtonWithTitle(QStringLiteral("Quit"));
    alert.addButtonWithTitle(QStringLiteral("Cancel"));
    AlertDriver driver;
    driver.pressWhenShown(Qt::Key_Escape);
    EXPECT_EQ(alert.runModal(), NSAlertSecondButtonReturn);

    // Without a cancel button Escape does nothing; the alert waits for a button.
    NSAlert noCancel;
    noCancel.addButtonWithTitle(QStringLiteral("Quit"));
    noCancel.addButtonWithTitle(QStringLiteral("Keep"));
    AlertDriver escape;
    bool stayed = false;
    escape.act([&](QMessageBox* box) {
        QTest::keyClick(box, Qt::Key_Escape);
        stayed = box->isVisible();
        box->buttons().first()->click();
    });
    noCancel.runModal();
    EXPECT_TRUE(stayed);
}

TEST(ModernAlert, SuppressionCheckBoxIsReadAfterTheRun)
{
    NSAlert alert;
    alert.addButtonWithTitle(QStringLiteral("OK"));
    alert.setShowsSuppressionButton(true);
    AlertDriver driver;
    driver.act([](QMessageBox* box) {
        ASSERT_NE(box->checkBox(), nullptr);
        EXPECT_EQ(box->checkBox()->text(), QStringLiteral("Do not show this message again"));
        box->checkBox()->click();
        box->buttons().first()->click();
    });
    EXPECT_EQ(alert.runModal(), NSAlertFirstButtonReturn);
    EXPECT_TRUE(alert.suppressionButtonState());
}

}
