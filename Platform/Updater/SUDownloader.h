// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUUpdaterError.h"

#include <QFile>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <optional>

class QNetworkAccessManager;
class QNetworkReply;

// Downloads an update's archive into a folder, with progress and a cancel. The file is written
// under a temporary name and gets its own name only when complete; a download that fails, is
// canceled or stalls removes what it wrote. finished() comes exactly once, from the event loop.
class SUDownloader : public QObject {
    Q_OBJECT
public:
    explicit SUDownloader(QNetworkAccessManager& network, QObject* parent = nullptr);
    ~SUDownloader() override;

    // expectedLength (the feed's, 0 when it gives none) ends a download that grows past it; a
    // server that sends nothing for stallTimeoutMs fails it.
    void start(const QUrl& url, const QString& folder, qint64 expectedLength, int stallTimeoutMs);
    void cancel();

    // The complete file, once finished() reported success.
    QString filePath() const { return m_path; }

signals:
    void progress(qint64 received, qint64 total);
    // Nothing on success; else why it failed (kind Canceled after cancel()).
    void finished(const std::optional<SUUpdaterError>& error);

private:
    void receive();
    void replyFinished();
    void abortWith(SUUpdaterError error);

    QNetworkAccessManager& m_network;
    QPointer<QNetworkReply> m_reply;
    QFile m_file;
    QString m_path;
    qint64 m_expectedLength = 0;
    QTimer m_stall;
    std::optional<SUUpdaterError> m_abortReason;
};
