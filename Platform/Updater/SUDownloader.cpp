// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUDownloader.h"

#include <QDir>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace {

QString fileNameOf(const QUrl& url)
{
    const QString name = QFileInfo(url.path()).fileName();
    return name.isEmpty() || name.startsWith(u'.') ? QStringLiteral("update") : name;
}

}

SUDownloader::SUDownloader(QNetworkAccessManager& network, QObject* parent)
    : QObject(parent)
    , m_network(network)
{
    m_stall.setSingleShot(true);
    connect(&m_stall, &QTimer::timeout, this, [this] {
        abortWith(
            { SUUpdaterError::DownloadFailed, QStringLiteral("The server stopped sending it.") });
    });
}

SUDownloader::~SUDownloader()
{
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }
    if (m_file.isOpen())
        m_file.remove();
}

void SUDownloader::start(
    const QUrl& url, const QString& folder, qint64 expectedLength, int stallTimeoutMs)
{
    m_expectedLength = expectedLength;
    m_path = QDir(folder).filePath(fileNameOf(url));
    QDir().mkpath(folder);
    m_file.setFileName(m_path + QStringLiteral(".part"));
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        const SUUpdaterError error { SUUpdaterError::DownloadFailed, m_file.errorString() };
        QMetaObject::invokeMethod(
            this, [this, error] { emit finished(error); }, Qt::QueuedConnection);
        return;
    }
    QNetworkRequest request(url);
    request.setAttribute(
        QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    m_reply = m_network.get(request);
    connect(m_reply, &QNetworkReply::readyRead, this, &SUDownloader::receive);
    connect(m_reply, &QNetworkReply::finished, this, &SUDownloader::replyFinished);
    m_stall.start(stallTimeoutMs);
}

void SUDownloader::cancel() { abortWith({ SUUpdaterError::Canceled, {} }); }

void SUDownloader::abortWith(SUUpdaterError error)
{
    if (!m_reply || m_abortReason)
        return;
    m_abortReason = std::move(error);
    m_reply->abort();
}

void SUDownloader::receive()
{
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status >= 400)
        return; // the error page is not the update
    m_stall.start();
    const QByteArray data = m_reply->readAll();
    if (m_file.write(data) != data.size()) {
        abortWith({ SUUpdaterError::DownloadFailed, m_file.errorString() });
        return;
    }
    if (m_expectedLength > 0 && m_file.size() > m_expectedLength) {
        abortWith({ SUUpdaterError::LengthMismatch,
            QStringLiteral("It is longer than %1 bytes.").arg(m_expectedLength) });
        return;
    }
    const qint64 total = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    emit progress(m_file.size(), total > 0 ? total : m_expectedLength);
}

void SUDownloader::replyFinished()
{
    m_stall.stop();
    if (!m_abortReason)
        receive();
    std::optional<SUUpdaterError> error = m_abortReason;
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!error && status >= 400)
        error = SUUpdaterError { SUUpdaterError::DownloadFailed,
            QStringLiteral("The server answered with HTTP status %1.").arg(status), status };
    if (!error && m_reply->error() != QNetworkReply::NoError)
        error = SUUpdaterError { SUUpdaterError::DownloadFailed, m_reply->errorString() };
    m_reply->deleteLater();
    m_reply = nullptr;
    m_file.close();
    if (error) {
        m_file.remove();
    } else {
        QFile::remove(m_path);
        if (!m_file.rename(m_path)) {
            error = SUUpdaterError { SUUpdaterError::DownloadFailed, m_file.errorString() };
            m_file.remove();
        }
    }
    emit finished(error);
}
