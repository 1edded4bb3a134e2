// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUStandardUserDriver.h"

#include "Localization.h"
#include "SUStatusWindow.h"
#include "SUUpdateAlert.h"

#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>

SUStandardUserDriver::SUStandardUserDriver(QObject* parent)
    : QObject(parent)
{
}

SUStandardUserDriver::~SUStandardUserDriver() { delete m_window.data(); }

void SUStandardUserDriver::showUpdateNotFound(const QString& currentVersion, const QString& note)
{
    QString text
        = NSLocalizedString(QStringLiteral("%1 %2 is currently the newest version available."))
              .arg(QGuiApplication::applicationDisplayName(), currentVersion);
    if (!note.isEmpty())
        text += QLatin1Char(' ') + note;
    showMessage(NSLocalizedString(QStringLiteral("You're up to date!")), text, false);
}

void SUStandardUserDriver::showUpdateFound(
    const SUUpdateFound& update, std::function<void(SUUpdateAlertChoice)> reply)
{
    present(new SUUpdateAlert(update, std::move(reply)));
}

void SUStandardUserDriver::showDownloadStarted(std::function<void()> cancel)
{
    present(new SUStatusWindow(std::move(cancel)));
}

SUStatusWindow* SUStandardUserDriver::statusWindow() const
{
    return qobject_cast<SUStatusWindow*>(m_window.data());
}

void SUStandardUserDriver::showDownloadProgress(qint64 received, qint64 total)
{
    if (SUStatusWindow* window = statusWindow())
        window->setDownloadProgress(received, total);
}

void SUStandardUserDriver::showInstallStatus(const QString& status, bool cancelable)
{
    if (SUStatusWindow* window = statusWindow())
        window->setStatus(status, cancelable);
}

void SUStandardUserDriver::dismissUpdateInstallation()
{
    if (SUStatusWindow* window = statusWindow()) {
        window->hide();
        window->deleteLater();
        m_window = nullptr;
    }
}

void SUStandardUserDriver::showReadyToInstallAtQuit(
    const SUUpdateFound& update, std::function<void(bool installNow)> reply)
{
    const QString application = QGuiApplication::applicationDisplayName();
    auto* box = new QMessageBox(QMessageBox::Information, application,
        NSLocalizedString("A new version of %1 is ready to install").arg(application));
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(NSLocalizedString("%1 %2 will be installed when you quit %1.")
                                .arg(application, update.newVersion));
    QPushButton* now
        = box->addButton(NSLocalizedString("Install and Relaunch"), QMessageBox::AcceptRole);
    QPushButton* later
        = box->addButton(NSLocalizedString("Install on Quit"), QMessageBox::RejectRole);
    box->setDefaultButton(later);
    box->setEscapeButton(later);
    connect(box, &QMessageBox::buttonClicked, box,
        [reply, now](QAbstractButton* clicked) { reply(clicked == now); });
    present(box);
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
    // The window replaced may be the one whose button led here: it goes once that has returned.
    if (m_window) {
        m_window->hide();
        m_window->deleteLater();
    }
    m_window = window;
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowModality(Qt::NonModal);
    window->show();
    window->raise();
    window->activateWindow();
}
