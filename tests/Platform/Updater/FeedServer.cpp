// SPDX-License-Identifier: GPL-3.0-or-later
#include "FeedServer.h"

#include "TestEnvironment.h"

#include <QTcpSocket>
#include <gtest/gtest.h>

FeedServer::FeedServer()
{
    EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost, 0))
        << m_server.errorString().toStdString();
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            socket->setParent(this);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { readRequest(socket); });
        }
    });
    answer(200, {});
}

void FeedServer::answer(int status, const QByteArray& body, const QByteArray& contentType)
{
    m_answers = true;
    m_response = "HTTP/1.1 " + QByteArray::number(status) + (status < 400 ? " OK" : " Not Found")
        + "\r\nContent-Type: " + contentType + "\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
}

QUrl FeedServer::url(const QString& pathAndQuery) const
{
    return QUrl(
        QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(pathAndQuery));
}

void FeedServer::readRequest(QTcpSocket* socket)
{
    // The updater sends GET requests without a body: the request ends with the empty line.
    QByteArray buffer = socket->property("buffer").toByteArray() + socket->readAll();
    socket->setProperty("buffer", buffer);
    if (!buffer.contains("\r\n\r\n"))
        return;
    m_requestLines.append(buffer.left(buffer.indexOf("\r\n")));
    if (!m_answers)
        return;
    socket->write(m_response);
    socket->disconnectFromHost();
}

bool spinUntil(const std::function<bool()>& condition, int timeoutMs)
{
    return TestEnvironment::waitUntil(condition, timeoutMs);
}

void spinFor(int milliseconds)
{
    spinUntil([] { return false; }, milliseconds);
}
