// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QStringList>

// One instance per user session. The first instance owns the bus name (the bundle identifier)
// and serves org.freedesktop.Application on it; a later launch hands its files and URLs to that
// instance with Open (or Activate when it has none) and exits.
class ApplicationInstance : public QObject {
    Q_OBJECT
public:
    enum class Role {
        Primary, // this process owns the name and serves the interface
        Forwarded, // another instance took the arguments; this process should exit
        Alone, // no session bus: this process handles its arguments itself
    };

    explicit ApplicationInstance(const QString& applicationIdentifier, QObject* parent = nullptr);
    ~ApplicationInstance() override;

    // Claims the name, or forwards the arguments (files as paths relative to the current folder,
    // or URLs; without the program name) to the instance that has it. The primary instance does
    // not receive its own arguments through the signals: the caller handles them.
    Role claim(const QStringList& arguments);
    // Gives the name up while the process goes on, so that another copy of the application can
    // take it (an updated copy starting); claim() takes it back.
    void release();

    // The executable of the process that owns the name (/proc/<pid>/exe); empty when nobody
    // owns it or there is no session bus. Another copy of the application is running when it is
    // not this process's executable.
    QString ownerExecutable() const;

    // Hands the arguments to the instance that owns the name, if one does and it runs this same
    // executable; true when it has them.
    // Needs QtDBus alone, no application object: a later launch calls it before it loads anything
    // else, and goes on to claim() when it returns false.
    static bool forwardToRunningInstance(
        const QString& applicationIdentifier, const QStringList& arguments);

    // The D-Bus object path for an identifier: "app.tolvane.Tolvane" gives
    // "/app/tolvane/Tolvane".
    static QString objectPath(const QString& applicationIdentifier);
    // Arguments as URIs: URLs as they are, file paths made absolute file:// URLs. An argument is
    // a URL when it begins with a scheme of two characters or more and a colon and does not name
    // an existing file; so "C:x" and "/a:b" are paths. Empty arguments are dropped.
    static QStringList urisFromArguments(
        const QStringList& arguments, const QString& workingFolder);

signals:
    // Another launch asked the application to come forward.
    void activateRequested();
    // Another launch asks for these URIs to be opened. Both signals arrive from the event loop,
    // after the caller has had its answer, so a handler may run a modal window.
    void openRequested(const QStringList& uris);

private:
    QString m_identifier;
    bool m_registered = false;
};
