// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUStatusWindow.h"

#include "Localization.h"

#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QString timeLeft(qint64 seconds)
{
    if (seconds < 60)
        return NSLocalizedString("about %1 seconds left").arg(std::max<qint64>(seconds, 1));
    if (seconds < 3600)
        return NSLocalizedString("about %1 minutes left").arg((seconds + 59) / 60);
    return NSLocalizedString("about %1 hours left").arg((seconds + 3599) / 3600);
}

}

SUStatusWindow::SUStatusWindow(std::function<void()> cancel, QWidget* parent)
    : QDialog(parent)
    , m_cancel(std::move(cancel))
{
    setWindowTitle(NSLocalizedString("Updating %1").arg(QGuiApplication::applicationDisplayName()));
    auto* layout = new QVBoxLayout(this);
    m_status = new QLabel(NSLocalizedString("Downloading update…"));
    QFont bold = m_status->font();
    bold.setBold(true);
    m_status->setFont(bold);
    layout->addWidget(m_status);
    m_progress = new QProgressBar;
    m_progress->setRange(0, 0);
    m_progress->setTextVisible(false);
    m_progress->setMinimumWidth(360);
    layout->addWidget(m_progress);
    m_detail = new QLabel;
    layout->addWidget(m_detail);
    auto* buttons = new QDialogButtonBox;
    m_cancelButton = buttons->addButton(QDialogButtonBox::Cancel);
    m_cancelButton->setText(NSLocalizedString("Cancel"));
    // Return, pressed once more after "Install Update", must not cancel what it started.
    m_cancelButton->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::rejected, this, &SUStatusWindow::reject);
    layout->addWidget(buttons);
    m_clock.start();
}

QString SUStatusWindow::downloadDetail(qint64 received, qint64 total, qint64 elapsedMs)
{
    const QLocale locale;
    if (total <= 0)
        return locale.formattedDataSize(received, 1, QLocale::DataSizeTraditionalFormat);
    QString text
        = NSLocalizedString("%1 of %2")
              .arg(locale.formattedDataSize(received, 1, QLocale::DataSizeTraditionalFormat),
                  locale.formattedDataSize(total, 1, QLocale::DataSizeTraditionalFormat));
    // The rate means something only after a moment.
    if (received > 0 && received < total && elapsedMs >= 1000) {
        const double bytesPerMs = double(received) / double(elapsedMs);
        text += QStringLiteral(" (%1)").arg(
            timeLeft(qint64((total - received) / bytesPerMs / 1000)));
    }
    return text;
}

void SUStatusWindow::setDownloadProgress(qint64 received, qint64 total)
{
    if (total > 0) {
        // Per mille, so that large files fit the bar's int.
        m_progress->setRange(0, 1000);
        m_progress->setValue(int(std::min(received, total) * 1000 / total));
    }
    m_detail->setText(downloadDetail(received, total, m_clock.elapsed()));
}

void SUStatusWindow::setStatus(const QString& status, bool cancelable)
{
    m_status->setText(status);
    m_detail->clear();
    m_progress->setRange(0, 0);
    m_cancelButton->setEnabled(cancelable);
}

QString SUStatusWindow::statusText() const { return m_status->text(); }

QString SUStatusWindow::detailText() const { return m_detail->text(); }

void SUStatusWindow::reject()
{
    // Once the bundle is being replaced, the window stays until that is done.
    if (!m_cancelButton->isEnabled())
        return;
    if (m_cancel)
        m_cancel();
    QDialog::reject();
}
