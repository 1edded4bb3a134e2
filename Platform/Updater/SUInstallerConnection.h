// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUUpdaterError.h"

#include <QObject>
#include <QProcess>
#include <optional>

class PrivilegedExecutor;

// The application's side of tolvane-update-installer (see its main.cpp for the conversation): it
// runs the installer as the user, or through the privileged executor when one is given, and turns
// its answers into signals. Every installation ends with exactly one of finished() and failed();
// destroying the connection first ends the installer's input, which rolls back.
class SUInstallerConnection : public QObject {
    Q_OBJECT
public:
    SUInstallerConnection(
        QString installerPath, const PrivilegedExecutor* executor, QObject* parent = nullptr);
    ~SUInstallerConnection() override;

    void start(
        const QString& bundle, const QString& archive, const QString& edSignature, qint64 length);
    void install();
    void commit();
    void rollback();

    // For the end of the process, when no event loop runs any more: install and commit, waiting
    // for each answer. False, and why in *error, when the old bundle stayed.
    bool installAndCommitNow(SUUpdaterError* error);

signals:
    void ready(const QString& version);
    void installed();
    // Committed or rolled back, as asked.
    void finished();
    void failed(const SUUpdaterError& error);

private:
    void readAnswers();
    // One answer line; false when it ended the conversation.
    bool handle(const QByteArray& line);
    static std::optional<SUUpdaterError> errorOfLine(const QByteArray& line);
    void processEnded();
    void send(const QByteArray& command);
    void fail(const SUUpdaterError& error);

    QString m_installerPath;
    const PrivilegedExecutor* m_executor;
    QProcess m_process;
    bool m_ended = false;
};
