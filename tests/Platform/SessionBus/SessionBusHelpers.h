// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <functional>

// Runs the event loop until the condition holds; false when the time is up first.
bool waitUntil(const std::function<bool()>& condition, int milliseconds = 10000);

// A stand-in for xdg-open, first on PATH for as long as the object lives, that writes each of its
// arguments on a line of a file in the temporary home.
class FakeOpener {
public:
    FakeOpener();
    ~FakeOpener();

    // The arguments of every call so far, one per line.
    QStringList recordedArguments() const;
    // Takes xdg-open off PATH altogether.
    void remove();

private:
    QByteArray m_savedPath;
    QString m_folder;
    QString m_log;
};
