// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QProcess>
#include <QString>
#include <QTimer>
#include <chrono>

// What a generator run produced.
struct QLGeneratorOutcome {
    enum Kind {
        Page, // path is the index.html it wrote
        Picture, // path is the only kind of preview it wrote: a PNG
        Failed, // reason says why, in a sentence for people
    };
    Kind kind = Failed;
    QString path;
    QString reason;
};

// One run of a preview generator's executable out of process:
//   <executable> preview FILE --uti UTI --out DIR
// The child runs in a process group of its own under a memory limit and is killed with
// everything it started when it passes the time limit or when the run is dropped. Whatever the
// child does, the run ends with exactly one finished() (unless it is destroyed first).
class QLGeneratorRun : public QObject {
    Q_OBJECT
public:
    struct Limits {
        std::chrono::milliseconds time { 30000 };
        // Address space of the child (RLIMIT_AS); 0 for none.
        qint64 memoryBytes = qint64(2) << 30;
    };

    QLGeneratorRun(const QString& executable, const QString& file, const QString& identifier,
        const QString& outputFolder, Limits limits, QObject* parent = nullptr);
    ~QLGeneratorRun() override;

    void start();

signals:
    void finished(const QLGeneratorOutcome& outcome);

private:
    void processFinished(int exitCode, QProcess::ExitStatus status);
    void processError(QProcess::ProcessError error);
    void collectStandardError();
    void killProcessGroup();
    void finish(const QLGeneratorOutcome& outcome);
    QLGeneratorOutcome outcomeOfOutput() const;
    QString generatorMessage() const;

    QProcess m_process;
    QTimer m_timer;
    QString m_outputFolder;
    Limits m_limits;
    qint64 m_processGroup = 0;
    QByteArray m_standardError;
    bool m_timedOut = false;
    bool m_done = false;
};
