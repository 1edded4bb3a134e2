// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <functional>

class QLabel;
class QProgressBar;
class QPushButton;

// The progress of an installation the user started: the download with bytes, total and time
// left, then the steps after it. Cancel (or Escape, or closing the window) calls the cancel
// function while the installation may still be canceled.
class SUStatusWindow : public QDialog {
    Q_OBJECT
public:
    explicit SUStatusWindow(std::function<void()> cancel, QWidget* parent = nullptr);

    void setDownloadProgress(qint64 received, qint64 total);
    // A step without a measure of its own; the bar runs without end.
    void setStatus(const QString& status, bool cancelable);

    QString statusText() const;
    QString detailText() const;
    QProgressBar* progressBar() const { return m_progress; }
    QPushButton* cancelButton() const { return m_cancelButton; }

    // "12.3 MB of 40 MB (about 20 seconds left)"; the time once enough is known.
    static QString downloadDetail(qint64 received, qint64 total, qint64 elapsedMs);

    void reject() override;

private:
    std::function<void()> m_cancel;
    QLabel* m_status;
    QLabel* m_detail;
    QProgressBar* m_progress;
    QPushButton* m_cancelButton;
    QElapsedTimer m_clock;
};
