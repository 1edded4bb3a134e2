// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUAppcast.h"
#include "SUUpdaterError.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <QVariantMap>

class QNetworkAccessManager;
class QNetworkReply;

// The outcome of one update check.
struct SUUpdateCheckResult {
    enum Outcome { UpdateFound, NoUpdateFound, Failed };
    Outcome outcome = Failed;
    SUAppcastItem item; // the newer item, for UpdateFound
    // For NoUpdateFound: a newer item that this system is outside the bounds of.
    std::optional<SUAppcastItem> newerItemForOtherSystem;
    SUUpdaterError error; // for Failed
};

// One check: fetches the feed with a time limit, reads it and decides whether it offers a version
// newer than the running one. Emits finished() exactly once, from the event loop.
class SUUpdateChecker : public QObject {
    Q_OBJECT
public:
    SUUpdateChecker(QNetworkAccessManager& network, QObject* parent = nullptr);
    ~SUUpdateChecker() override;

    // The feed address with the parameters appended to its query (after any query it has
    // already), each "key" and "value" percent-encoded as UTF-8. Records without a "key" are left
    // out.
    static QUrl parameterizedFeedURL(const QUrl& feedURL, const QList<QVariantMap>& parameters);

    // hostVersion is the running version; systemVersion is compared with the items' system
    // bounds; the rollout holds back phased updates. A server that has not answered completely
    // after timeoutMs fails the check.
    void start(const QUrl& url, const QString& hostVersion, const QString& systemVersion,
        const SUAppcastRollout& rollout, int timeoutMs);

signals:
    void finished(const SUUpdateCheckResult& result);

private:
    void replyFinished();
    SUUpdateCheckResult resultOfReply() const;
    SUUpdateCheckResult resultOfFeed(const QByteArray& data) const;

    QNetworkAccessManager& m_network;
    QPointer<QNetworkReply> m_reply;
    QTimer m_timeout;
    bool m_timedOut = false;
    QString m_hostVersion;
    QString m_systemVersion;
    SUAppcastRollout m_rollout;
};
