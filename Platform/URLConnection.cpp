// SPDX-License-Identifier: GPL-3.0-or-later
#include "URLConnection.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

namespace URLConnection {

std::optional<QByteArray> sendSynchronousRequest(const QUrl& url, int timeLimitMilliseconds)
{
    QNetworkAccessManager network;
    QNetworkRequest request(url);
    request.setAttribute(
        QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setTransferTimeout(timeLimitMilliseconds);

    QNetworkReply* reply = network.get(request);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    // The transfer timeout restarts with every byte; this one bounds the whole answer.
    QTimer::singleShot(timeLimitMilliseconds, &loop, &QEventLoop::quit);
    if (!reply->isFinished())
        loop.exec();

    std::optional<QByteArray> body;
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply->isFinished() && reply->error() == QNetworkReply::NoError && status >= 200
        && status < 300)
        body = reply->readAll();
    reply->abort();
    delete reply;
    return body;
}

}
