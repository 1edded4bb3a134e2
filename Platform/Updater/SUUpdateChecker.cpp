// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUUpdateChecker.h"

#include "SUAppcast.h"
#include "SUVersionComparison.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

SUUpdateChecker::SUUpdateChecker(QNetworkAccessManager& network, QObject* parent)
    : QObject(parent)
    , m_network(network)
{
    m_timeout.setSingleShot(true);
    connect(&m_timeout, &QTimer::timeout, this, [this] {
        m_timedOut = true;
        if (m_reply)
            m_reply->abort();
    });
}

SUUpdateChecker::~SUUpdateChecker()
{
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }
}

QUrl SUUpdateChecker::parameterizedFeedURL(
    const QUrl& feedURL, const QList<QVariantMap>& parameters)
{
    QByteArray query = feedURL.query(QUrl::FullyEncoded).toLatin1();
    for (const QVariantMap& parameter : parameters) {
        const QString key = parameter.value(QStringLiteral("key")).toString();
        if (key.isEmpty())
            continue;
        const QString value = parameter.value(QStringLiteral("value")).toString();
        if (!query.isEmpty())
            query += '&';
        query += QUrl::toPercentEncoding(key) + '=' + QUrl::toPercentEncoding(value);
    }
    QUrl url = feedURL;
    if (!query.isEmpty())
        url.setQuery(QString::fromLatin1(query), QUrl::StrictMode);
    return url;
}

void SUUpdateChecker::start(const QUrl& url, const QString& hostVersion,
    const QString& systemVersion, const SUAppcastRollout& rollout, int timeoutMs)
{
    m_hostVersion = hostVersion;
    m_systemVersion = systemVersion;
    m_rollout = rollout;

    QNetworkRequest request(url);
    request.setAttribute(
        QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setRawHeader("Accept", "application/rss+xml, application/xml, */*;q=0.1");
    const QString agent
        = QStringLiteral("%1/%2").arg(QCoreApplication::applicationName(), hostVersion);
    request.setHeader(QNetworkRequest::UserAgentHeader, agent);

    m_reply = m_network.get(request);
    connect(m_reply, &QNetworkReply::finished, this, &SUUpdateChecker::replyFinished);
    m_timeout.start(timeoutMs);
}

void SUUpdateChecker::replyFinished()
{
    m_timeout.stop();
    const SUUpdateCheckResult result = resultOfReply();
    m_reply->deleteLater();
    m_reply = nullptr;
    emit finished(result);
}

SUUpdateCheckResult SUUpdateChecker::resultOfReply() const
{
    SUUpdateCheckResult result;
    if (m_timedOut) {
        result.error.kind = SUUpdaterError::TimedOut;
        result.error.detail = m_reply->url().toDisplayString();
        return result;
    }
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status >= 400) {
        result.error.kind = SUUpdaterError::ServerError;
        result.error.httpStatus = status;
        result.error.detail
            = m_reply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString();
        return result;
    }
    if (m_reply->error() != QNetworkReply::NoError) {
        result.error.kind = SUUpdaterError::NoNetwork;
        result.error.detail = m_reply->errorString();
        return result;
    }
    return resultOfFeed(m_reply->readAll());
}

SUUpdateCheckResult SUUpdateChecker::resultOfFeed(const QByteArray& data) const
{
    SUUpdateCheckResult result;
    QString problem;
    const std::optional<SUAppcast> appcast = SUAppcast::fromData(data, &problem);
    if (!appcast) {
        result.error.kind = SUUpdaterError::MalformedFeed;
        result.error.detail = problem;
        return result;
    }
    const auto isNewer = [this](const std::optional<SUAppcastItem>& item) {
        return item && SUVersionComparison::compareVersions(item->versionString, m_hostVersion) > 0;
    };
    const std::optional<SUAppcastItem> best = appcast->bestItem(m_systemVersion, m_rollout);
    if (isNewer(best)) {
        result.outcome = SUUpdateCheckResult::UpdateFound;
        result.item = *best;
        return result;
    }
    result.outcome = SUUpdateCheckResult::NoUpdateFound;
    const std::optional<SUAppcastItem> newest = appcast->newestItem();
    if (isNewer(newest) && !newest->supportsSystem(m_systemVersion))
        result.newerItemForOtherSystem = newest;
    return result;
}
