// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What runModal() returns for the buttons of an alert made with alertWithMessageText():
// NSAlertDefaultReturn, NSAlertAlternateReturn, NSAlertOtherReturn.
#include "AlertPanel.h"

#include <QCheckBox>
#include <QList>
#include <QPointer>
#include <QString>
#include <memory>

class QAbstractButton;
class QMessageBox;
class QPushButton;

// What runModal() returns for the buttons added with addButtonWithTitle(): the first, second,
// third and so on.
enum : long {
    NSAlertFirstButtonReturn = 1000,
    NSAlertSecondButtonReturn = 1001,
    NSAlertThirdButtonReturn = 1002,
};

enum class NSAlertStyle {
    Warning,
    Informational,
    Critical,
};

// An alert panel: a message box titled with the application's name. The buttons stand from
// right to left in the order given, the first being the default (Return); Escape presses the
// cancel button: the alternate button of a classic alert, else a button titled "Cancel".
class NSAlert {
public:
    NSAlert();
    ~NSAlert();
    NSAlert(const NSAlert&) = delete;
    NSAlert& operator=(const NSAlert&) = delete;

    // The classic alert. A null title means no such button; a null default title is "OK", as an
    // alert must have a button.
    static std::unique_ptr<NSAlert> alertWithMessageText(const QString& message,
        const QString& defaultButton, const QString& alternateButton, const QString& otherButton,
        const QString& informativeText);

    QString messageText() const;
    void setMessageText(const QString& text);
    QString informativeText() const;
    void setInformativeText(const QString& text);
    NSAlertStyle alertStyle() const { return m_style; }
    void setAlertStyle(NSAlertStyle style);

    // Adds a button to the left of those there; runModal() then returns 1000 for the first one,
    // 1001 for the second and so on.
    QPushButton* addButtonWithTitle(const QString& title);
    QList<QPushButton*> buttons() const { return m_buttons; }

    // A check box under the text ("Do not show this message again" unless retitled).
    bool showsSuppressionButton() const;
    void setShowsSuppressionButton(bool shows);
    QCheckBox* suppressionButton();
    bool suppressionButtonState() const;

    // Shows the alert modally and returns the pressed button's result.
    long runModal();

    QMessageBox* window() const { return m_box.get(); }

private:
    QPushButton* addButton(const QString& title, long result);
    void arrangeButtons();

    std::unique_ptr<QMessageBox> m_box;
    QList<QPushButton*> m_buttons;
    QList<long> m_results;
    QPointer<QCheckBox> m_suppression;
    NSAlertStyle m_style = NSAlertStyle::Warning;
    bool m_classic = false;
};
