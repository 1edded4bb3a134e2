// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUStandardUserDriver.h"

#include "Localization.h"
#include "SUUpdateAlert.h"

#include <QGuiApplication>
#include <QMessageBox>

SUStandardUserDriver::SUStandardUserDriver(QObject* parent)
    : QObject(parent)
{
}

SUStandardUserDriver::~SUStandardUserDriver() { delete m_window.data(); }

void SUStandardUserDriver::showUpdateNotFound(const QString& currentVersion)
{
    showMessage(NSLocalizedString(QStringLiteral("You're up to date!")),
        NSLocalizedString(QStringLiteral("%1 %2 is currently the newest version available."))
            .arg(QGuiApplication::applicationDisplayName(), currentVersion),
        false);
}

void SUStandardUserDriver::showUpdateFound(const SUUpdateFound& update)
{
    present(new SUUpdateAlert(update));
}

void SUStandardUserDriver::showUpdaterError(const SUUpdaterError& error)
{
    showMessage(
        NSLocalizedString(QStringLiteral("Update Error!")), error.localizedDescription(), true);
}

void SUStandardUserDriver::showMessage(
    const QString& text, const QString& informativeText, bool isError)
{
    auto* box = new QMessageBox(isError ? QMessageBox::Warning : QMessageBox::Information,
        QGuiApplication::applicationDisplayName(), text, QMessageBox::Ok);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(informativeText);
    present(box);
}

void SUStandardUserDriver::present(QWidget* window)
{
    delete m_window.data();
    m_window = window;
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowModality(Qt::NonModal);
    window->show();
    window->raise();
    window->activateWindow();
}
