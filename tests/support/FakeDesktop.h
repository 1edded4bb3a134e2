// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QStringList>

// Stand-ins for the desktop around the application, for tests.
namespace FakeDesktop {

// Puts an `xdg-open` first on PATH that records each URL it is given, one per line.
void installOpener();
// The URLs handed to xdg-open so far.
QStringList openedURLs();

}

// org.freedesktop.FileManager1 on the test's session bus, recording ShowItems calls.
class FakeFileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")
public:
    FakeFileManager();
    ~FakeFileManager() override;

    bool registered() const { return m_registered; }
    // The URI lists of the calls so far, in order.
    QList<QStringList> calls() const { return m_calls; }
    // Spins the event loop until a call has come or the time is up.
    bool waitForCall(int milliseconds = 5000);

public slots:
    void ShowItems(const QStringList& uris, const QString& startupId);
    void ShowFolders(const QStringList& uris, const QString& startupId);

private:
    bool m_registered = false;
    QList<QStringList> m_calls;
};
