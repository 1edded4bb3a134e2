// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

// Runs a program with administrator rights through polkit's pkexec, which asks the user to
// authenticate. The program gets its arguments as they are, never through a shell, so paths
// with quotes, blanks or newlines pass unharmed.
class PrivilegedExecutor {
public:
    enum class Status {
        Succeeded,
        // The program ran and failed, or authorization was refused.
        Failed,
        // The user dismissed the authentication dialog (pkexec's status 126).
        Canceled,
    };
    struct Result {
        Status status = Status::Failed;
        // The program's exit status; -1 when it did not end normally.
        int exitCode = -1;
        // The last lines of the standard error of pkexec and the program.
        QString errorOutput;
    };

    // pkexec as found on PATH at the first call, kept for the life of the process; nothing when
    // there is none.
    static const PrivilegedExecutor* shared();

    explicit PrivilegedExecutor(QString executorPath);
    QString executorPath() const { return m_executorPath; }

    // Runs the program (an absolute path) with the arguments as root and waits for it to end.
    Result run(const QString& program, const QStringList& arguments) const;
    // What a program's exit status means when it was run through the executor: for callers that
    // run it themselves (executorPath() with the program and its arguments) to talk with it.
    static Status statusOfExitCode(int exitCode);

private:
    QString m_executorPath;
};
