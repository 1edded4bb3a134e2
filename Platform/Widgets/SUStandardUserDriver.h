// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUUserDriver.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

class SUStatusWindow;

// The updater's windows. None is modal, since they report on checks that run while the user
// works; a new one replaces the one still open.
class SUStandardUserDriver : public QObject, public SUUserDriver {
    Q_OBJECT
public:
    explicit SUStandardUserDriver(QObject* parent = nullptr);
    ~SUStandardUserDriver() override;

    void showUpdateNotFound(const QString& currentVersion, const QString& note) override;
    void showUpdateFound(
        const SUUpdateFound& update, std::function<void(SUUpdateAlertChoice)> reply) override;
    void showUpdaterError(const SUUpdaterError& error) override;
    void showDownloadStarted(std::function<void()> cancel) override;
    void showDownloadProgress(qint64 received, qint64 total) override;
    void showInstallStatus(const QString& status, bool cancelable) override;
    void dismissUpdateInstallation() override;
    void showReadyToInstallAtQuit(
        const SUUpdateFound& update, std::function<void(bool installNow)> reply) override;

    // The window now open; none when it was closed.
    QWidget* window() const { return m_window; }

private:
    SUStatusWindow* statusWindow() const;
    void present(QWidget* window);
    void showMessage(const QString& text, const QString& informativeText, bool isError);

    QPointer<QWidget> m_window;
};
