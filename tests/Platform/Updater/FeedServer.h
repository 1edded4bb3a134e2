// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QTcpServer>
#include <QUrl>
#include <functional>

class QTcpSocket;

// An HTTP server on 127.0.0.1 for the updater's tests: it records every request line and answers
// each request with a canned response, the one of its path or else the default one, or never
// answers at all.
class FeedServer : public QObject {
    Q_OBJECT
public:
    FeedServer();

    void answer(int status, const QByteArray& body,
        const QByteArray& contentType = "application/rss+xml; charset=utf-8");
    // The answer for one path (without the query).
    void answerPath(const QByteArray& path, int status, const QByteArray& body,
        const QByteArray& contentType = "application/octet-stream");
    // For this path: announces the whole body, sends only its first `sent` bytes and closes.
    void truncatePath(const QByteArray& path, const QByteArray& body, qsizetype sent);
    // For this path: announces the body, sends its first `sent` bytes and then nothing more.
    void stallPath(const QByteArray& path, const QByteArray& body, qsizetype sent);
    // Accepts connections and reads the requests, but sends nothing back.
    void neverAnswer() { m_answers = false; }

    // http://127.0.0.1:<port><pathAndQuery>
    QUrl url(const QString& pathAndQuery) const;
    // "GET /path?query HTTP/1.1", in order of arrival.
    QList<QByteArray> requestLines() const { return m_requestLines; }

private:
    struct Response {
        QByteArray bytes;
        bool close = true;
    };
    static QByteArray response(int status, const QByteArray& body, const QByteArray& contentType);
    void readRequest(QTcpSocket* socket);

    QTcpServer m_server;
    bool m_answers = true;
    QByteArray m_response;
    QMap<QByteArray, Response> m_paths;
    QList<QByteArray> m_requestLines;
};

// Runs the event loop until condition() holds or timeoutMs passes; returns condition().
bool spinUntil(const std::function<bool()>& condition, int timeoutMs = 5000);
// Runs the event loop for a while.
void spinFor(int milliseconds);
