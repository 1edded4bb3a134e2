// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSAlert.h"

#include "Localization.h"

#include <QCheckBox>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>

NSAlert::NSAlert()
    : m_box(std::make_unique<QMessageBox>())
{
    m_box->setWindowTitle(QGuiApplication::applicationDisplayName());
    m_box->setTextFormat(Qt::PlainText);
    setAlertStyle(NSAlertStyle::Warning);
}

NSAlert::~NSAlert() = default;

std::unique_ptr<NSAlert> NSAlert::alertWithMessageText(const QString& message,
    const QString& defaultButton, const QString& alternateButton, const QString& otherButton,
    const QString& informativeText)
{
    auto alert = std::make_unique<NSAlert>();
    alert->m_classic = true;
    alert->setMessageText(message);
    alert->setInformativeText(informativeText);
    alert->addButton(
        defaultButton.isNull() ? NSLocalizedString(QStringLiteral("OK")) : defaultButton,
        NSAlertDefaultReturn);
    if (!alternateButton.isNull())
        alert->addButton(alternateButton, NSAlertAlternateReturn);
    if (!otherButton.isNull())
        alert->addButton(otherButton, NSAlertOtherReturn);
    return alert;
}

QString NSAlert::messageText() const { return m_box->text(); }
void NSAlert::setMessageText(const QString& text) { m_box->setText(text); }
QString NSAlert::informativeText() const { return m_box->informativeText(); }
void NSAlert::setInformativeText(const QString& text) { m_box->setInformativeText(text); }

void NSAlert::setAlertStyle(NSAlertStyle style)
{
    m_style = style;
    switch (style) {
    case NSAlertStyle::Warning:
        return m_box->setIcon(QMessageBox::Warning);
    case NSAlertStyle::Informational:
        return m_box->setIcon(QMessageBox::Information);
    case NSAlertStyle::Critical:
        return m_box->setIcon(QMessageBox::Critical);
    }
}

QPushButton* NSAlert::addButtonWithTitle(const QString& title)
{
    return addButton(title, NSAlertFirstButtonReturn + m_buttons.size());
}

QPushButton* NSAlert::addButton(const QString& title, long result)
{
    // One role for all, so that the box keeps them in the order arrangeButtons() gives.
    QPushButton* button = m_box->addButton(title, QMessageBox::ActionRole);
    m_buttons << button;
    m_results << result;
    arrangeButtons();
    return button;
}

void NSAlert::arrangeButtons()
{
    for (QPushButton* button : std::as_const(m_buttons))
        m_box->removeButton(button);
    for (auto button = m_buttons.crbegin(); button != m_buttons.crend(); ++button)
        m_box->addButton(*button, QMessageBox::ActionRole);

    m_box->setDefaultButton(m_buttons.first());
    QPushButton* cancel = nullptr;
    if (m_classic) {
        const qsizetype alternate = m_results.indexOf(NSAlertAlternateReturn);
        cancel = alternate >= 0 ? m_buttons.at(alternate) : nullptr;
    } else {
        const QString cancelTitle = NSLocalizedString(QStringLiteral("Cancel"));
        for (QPushButton* button : std::as_const(m_buttons)) {
            if (button->text() == cancelTitle) {
                cancel = button;
                break;
            }
        }
    }
    // Without a cancel button Escape does nothing, as the window cannot be closed otherwise.
    m_box->setEscapeButton(cancel);
}

bool NSAlert::showsSuppressionButton() const { return m_box->checkBox() != nullptr; }

void NSAlert::setShowsSuppressionButton(bool shows)
{
    if (!shows) {
        // The box deletes the check box it lets go of.
        m_box->setCheckBox(nullptr);
        return;
    }
    m_box->setCheckBox(suppressionButton());
    m_suppression->setVisible(true);
}

QCheckBox* NSAlert::suppressionButton()
{
    if (!m_suppression) {
        m_suppression = new QCheckBox(
            NSLocalizedString(QStringLiteral("Do not show this message again")), m_box.get());
        m_suppression->hide();
    }
    return m_suppression;
}

bool NSAlert::suppressionButtonState() const { return m_suppression && m_suppression->isChecked(); }

long NSAlert::runModal()
{
    if (m_buttons.isEmpty())
        addButtonWithTitle(NSLocalizedString(QStringLiteral("OK")));
    m_box->exec();
    const qsizetype pressed = m_buttons.indexOf(qobject_cast<QPushButton*>(m_box->clickedButton()));
    return m_results.at(pressed >= 0 ? pressed : 0);
}
