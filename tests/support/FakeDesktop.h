// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Stand-ins for the desktop around the application, for tests.

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

// A stand-in for xdg-open, first on PATH for as long as the object lives, that writes each of its
// arguments on a line of a file in the temporary home. Processes started meanwhile, death tests'
// children included, inherit it and record into the same file.
class FakeOpener {
public:
    FakeOpener();
    ~FakeOpener();
    FakeOpener(const FakeOpener&) = delete;
    FakeOpener& operator=(const FakeOpener&) = delete;

    // The arguments of every call so far, one per line.
    QStringList recordedArguments() const;

private:
    QByteArray m_savedPath;
    QString m_folder;
    QString m_log;
};

// org.freedesktop.FileManager1 on the test's session bus, recording ShowItems and ShowFolders
// calls. It has a connection of its own, so that calls from the code under test go through the bus
// as they would to a real file manager, even from the same process.
class FakeFileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")
public:
    FakeFileManager();
    ~FakeFileManager() override;

    bool registered() const { return m_registered; }
    // The URI lists of the calls so far, in order.
    QList<QStringList> calls() const { return m_calls; }
    // The startup ids of the calls so far, in order.
    QStringList startupIds() const { return m_startupIds; }
    // Spins the event loop until another call has come or the time is up.
    bool waitForCall(int milliseconds = 5000);

public slots:
    void ShowItems(const QStringList& uris, const QString& startupId);
    void ShowFolders(const QStringList& uris, const QString& startupId);

private:
    bool m_registered = false;
    QList<QStringList> m_calls;
    QStringList m_startupIds;
};
