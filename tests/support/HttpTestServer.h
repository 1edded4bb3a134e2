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

// An HTTP/1.1 server on 127.0.0.1 for tests: it records every request, bodies included, and
// answers each with what the responder gives for it (200 and an empty body unless told
// otherwise), or keeps the connection open without answering.
class HttpTestServer : public QObject {
    Q_OBJECT
public:
    struct Request {
        QByteArray method;
        // The request target as sent: path and query.
        QByteArray target;
        // "GET /path?query HTTP/1.1"
        QByteArray requestLine;
        QByteArray contentType;
        QByteArray body;

        // The target without its query.
        QByteArray path() const { return target.split('?').value(0); }
    };
    struct Response {
        int status = 200;
        QByteArray body;
        QByteArray contentType = "text/html; charset=utf-8";
        // Sends only this many bytes of the announced body (all when negative).
        qsizetype sent = -1;
        // After a cut body: hangs up, or keeps the connection open and says nothing more.
        bool hangUp = true;
    };
    using Responder = std::function<Response(const Request&)>;

    HttpTestServer();

    void respond(Responder responder) { m_responder = std::move(responder); }
    // The same answer to every request.
    void respond(const Response& response);
    // The answer for one path, before the responder is asked.
    void respondTo(const QByteArray& path, const Response& response) { m_paths[path] = response; }
    void neverAnswer() { m_answers = false; }

    quint16 port() const { return m_server.serverPort(); }
    // "127.0.0.1:<port>"
    QString authority() const;
    // http://127.0.0.1:<port><pathAndQuery>
    QUrl url(const QString& pathAndQuery) const;

    QList<Request> requests() const { return m_requests; }
    // Runs the event loop until count requests have come in or the time is up.
    bool waitForRequests(qsizetype count, int milliseconds = 15000);
    // The same, but no timer of the program under test fires meanwhile: a time limit started with
    // the request cannot run out before the request is here, however slow the machine is.
    bool waitForRequestsHoldingTimers(qsizetype count, int milliseconds = 15000);

private:
    void readRequest(QTcpSocket* socket);

    QTcpServer m_server;
    Responder m_responder;
    bool m_answers = true;
    QMap<QByteArray, Response> m_paths;
    QList<Request> m_requests;
};

// A port on 127.0.0.1 where nothing listens.
quint16 closedLocalPort();
