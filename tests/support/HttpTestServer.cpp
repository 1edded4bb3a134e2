// SPDX-License-Identifier: GPL-3.0-or-later
#include "HttpTestServer.h"

#include "TestEnvironment.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTcpSocket>
#include <QThread>
#include <gtest/gtest.h>

namespace {

QByteArray headerValue(const QList<QByteArray>& headerLines, const QByteArray& name)
{
    for (const QByteArray& line : headerLines) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).trimmed().toLower() == name)
            return line.mid(colon + 1).trimmed();
    }
    return {};
}

}

HttpTestServer::HttpTestServer()
{
    EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost, 0))
        << m_server.errorString().toStdString();
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            socket->setParent(this);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { readRequest(socket); });
        }
    });
    respond(Response {});
}

void HttpTestServer::respond(const Response& response)
{
    m_responder = [response](const Request&) { return response; };
}

QString HttpTestServer::authority() const { return QStringLiteral("127.0.0.1:%1").arg(port()); }

QUrl HttpTestServer::url(const QString& pathAndQuery) const
{
    return QUrl(QStringLiteral("http://") + authority() + pathAndQuery);
}

bool HttpTestServer::waitForRequests(qsizetype count, int milliseconds)
{
    return TestEnvironment::waitUntil([&] { return m_requests.size() >= count; }, milliseconds);
}

bool HttpTestServer::waitForRequestsHoldingTimers(qsizetype count, int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    while (m_requests.size() < count && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::X11ExcludeTimers);
        QThread::msleep(5);
    }
    return m_requests.size() >= count;
}

void HttpTestServer::readRequest(QTcpSocket* socket)
{
    const QByteArray buffer = socket->property("buffer").toByteArray() + socket->readAll();
    socket->setProperty("buffer", buffer);
    const qsizetype headerEnd = buffer.indexOf("\r\n\r\n");
    if (headerEnd < 0)
        return;
    const QList<QByteArray> headerLines = buffer.left(headerEnd).split('\n');
    const qsizetype bodyLength = headerValue(headerLines, "content-length").toLongLong();
    if (buffer.size() < headerEnd + 4 + bodyLength)
        return;
    socket->setProperty("buffer", QByteArray());

    Request request;
    request.requestLine = headerLines.value(0).trimmed();
    const QList<QByteArray> parts = request.requestLine.split(' ');
    request.method = parts.value(0);
    request.target = parts.value(1);
    request.contentType = headerValue(headerLines, "content-type");
    request.body = buffer.mid(headerEnd + 4, bodyLength);
    m_requests.append(request);
    if (!m_answers)
        return;
    const Response response
        = m_paths.contains(request.path()) ? m_paths.value(request.path()) : m_responder(request);
    // Clients go by the status code; the reason phrase is only for people.
    socket->write("HTTP/1.1 " + QByteArray::number(response.status)
        + (response.status < 400 ? " OK" : " Error") + "\r\nContent-Type: " + response.contentType
        + "\r\nContent-Length: " + QByteArray::number(response.body.size())
        + "\r\nConnection: close\r\n\r\n"
        + (response.sent < 0 ? response.body : response.body.left(response.sent)));
    if (response.sent < 0 || response.hangUp)
        socket->disconnectFromHost();
}

quint16 closedLocalPort()
{
    QTcpServer probe;
    EXPECT_TRUE(probe.listen(QHostAddress::LocalHost, 0));
    const quint16 port = probe.serverPort();
    probe.close();
    return port;
}
