// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUUserDriver.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

// The updater's windows. None is modal, since they report on checks that run while the user
// works; a new one replaces the one still open.
class SUStandardUserDriver : public QObject, public SUUserDriver {
    Q_OBJECT
public:
    explicit SUStandardUserDriver(QObject* parent = nullptr);
    ~SUStandardUserDriver() override;

    void showUpdateNotFound(const QString& currentVersion) override;
    void showUpdateFound(const SUUpdateFound& update) override;
    void showUpdaterError(const SUUpdaterError& error) override;

    // The window now open; none when it was closed.
    QWidget* window() const { return m_window; }

private:
    void present(QWidget* window);
    void showMessage(const QString& text, const QString& informativeText, bool isError);

    QPointer<QWidget> m_window;
};
