// SPDX-License-Identifier: GPL-3.0-or-later
#include "FeedServer.h"

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

QByteArray FeedServer::response(int status, const QByteArray& body, const QByteArray& contentType)
{
    return "HTTP/1.1 " + QByteArray::number(status) + (status < 400 ? " OK" : " Not Found")
        + "\r\nContent-Type: " + contentType + "\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
}

void FeedServer::answer(int status, const QByteArray& body, const QByteArray& contentType)
{
    m_response = response(status, body, contentType);
}

void FeedServer::answerPath(
    const QByteArray& path, int status, const QByteArray& body, const QByteArray& contentType)
{
    m_paths[path] = response(status, body, contentType);
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
    const QByteArray requestLine = buffer.left(buffer.indexOf("\r\n"));
    m_requestLines.append(requestLine);
    socket->setProperty("buffer", QByteArray());
    const QByteArray path = requestLine.split(' ').value(1).split('?').value(0);
    socket->write(m_paths.value(path, m_response));
    socket->disconnectFromHost();
}
