// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QTcpServer>
#include <QUrl>

class QTcpSocket;

// An HTTP server on 127.0.0.1 for the application's update tests (the updater's own use
// HttpTestServer): it records every request line and answers each request with a canned
// response, the one of its path or else the default one.
class FeedServer : public QObject {
    Q_OBJECT
public:
    FeedServer();

    void answer(int status, const QByteArray& body,
        const QByteArray& contentType = "application/rss+xml; charset=utf-8");
    // The answer for one path (without the query).
    void answerPath(const QByteArray& path, int status, const QByteArray& body,
        const QByteArray& contentType = "application/octet-stream");

    // http://127.0.0.1:<port><pathAndQuery>
    QUrl url(const QString& pathAndQuery) const;
    // "GET /path?query HTTP/1.1", in order of arrival.
    QList<QByteArray> requestLines() const { return m_requestLines; }

private:
    static QByteArray response(int status, const QByteArray& body, const QByteArray& contentType);
    void readRequest(QTcpSocket* socket);

    QTcpServer m_server;
    QByteArray m_response;
    QMap<QByteArray, QByteArray> m_paths;
    QList<QByteArray> m_requestLines;
};
