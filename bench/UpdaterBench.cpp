// SPDX-License-Identifier: GPL-3.0-or-later
// The updater's costs against references measured in the same run:
// - a check against an up-to-date feed (request, parse, compare) against a bare HTTP fetch of the
//   same feed from the same server on 127.0.0.1;
// - the verification of a 50 MB archive (length and Ed25519 signature) against sha256sum of it.
#include "BenchmarkRatio.h"
#include "SUArchiveVerification.h"
#include "SUEd25519.h"
#include "SUUpdater.h"
#include "UserDefaults.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

namespace {

// A feed of 40 releases, the newest of which is the running one.
QByteArray upToDateFeed()
{
    QByteArray items;
    for (int release = 60; release <= 100; ++release)
        items += "<item><title>Version " + QByteArray::number(release)
            + "</title>"
              "<pubDate>Mon, 02 Jun 2025 09:30:00 +0000</pubDate>"
              "<sparkle:version>"
            + QByteArray::number(release)
            + "</sparkle:version>"
              "<description><![CDATA[<ul><li>Fixes and improvements.</li></ul>]]></description>"
              "<enclosure url=\"http://127.0.0.1/Tolvane.tar.xz\" length=\"52428800\" "
              "type=\"application/x-xz\" sparkle:edSignature=\""
            + QByteArray(88, 'A')
            + "\"/>"
              "</item>";
    return "<?xml version=\"1.0\"?><rss version=\"2.0\" "
           "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>"
        + items + "</channel></rss>";
}

// Answers every request with the feed.
class Server : public QTcpServer {
public:
    explicit Server(const QByteArray& body)
        : m_response("HTTP/1.1 200 OK\r\nContent-Type: application/rss+xml\r\nContent-Length: "
            + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body)
    {
        listen(QHostAddress::LocalHost, 0);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* socket = nextPendingConnection()) {
                connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                    if (!socket->readAll().endsWith("\r\n\r\n"))
                        return;
                    socket->write(m_response);
                    socket->disconnectFromHost();
                });
                connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
    }
    QUrl url() const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1/appcast.xml").arg(serverPort()));
    }

private:
    QByteArray m_response;
};

}

int main(int argc, char** argv)
{
    QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    QCoreApplication application(argc, argv);

    Server server(upToDateFeed());
    UserDefaults defaults(QStringLiteral("app.tolvane.UpdaterBench"));
    SUUpdater updater(defaults, QStringLiteral("100"));
    updater.setFeedURL(server.url());
    QNetworkAccessManager network;

    const double fetch = BenchmarkRatio::bestNanoseconds(
        [&] {
            QNetworkRequest request(server.url());
            request.setAttribute(
                QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
            QNetworkReply* reply = network.get(request);
            QEventLoop loop;
            QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
            loop.exec();
            reply->readAll();
            reply->deleteLater();
        },
        50);
    const double check = BenchmarkRatio::bestNanoseconds(
        [&] {
            QEventLoop loop;
            QObject::connect(&updater, &SUUpdater::updateCheckFinished, &loop, &QEventLoop::quit);
            updater.checkForUpdatesInBackground();
            loop.exec();
        },
        50);
    BenchmarkRatio::report("check of an up-to-date feed", check, "bare fetch of the feed", fetch);

    const QString archivePath = home.filePath(QStringLiteral("Tolvane-2.0.tar.xz"));
    QByteArray archive(50 * 1024 * 1024, '\0');
    QRandomGenerator::global()->fillRange(
        reinterpret_cast<quint32*>(archive.data()), archive.size() / 4);
    QFile file(archivePath);
    if (!file.open(QIODevice::WriteOnly) || file.write(archive) != archive.size())
        return 1;
    file.close();
    const SUEd25519::KeyPair keys = SUEd25519::generateKeyPair();
    const QString signature
        = QString::fromLatin1(SUEd25519::sign(keys.secretKey, archive).toBase64());
    const QString publicKey = QString::fromLatin1(keys.publicKey.toBase64());
    const qint64 length = archive.size();
    archive.clear();

    const double sha256sum = BenchmarkRatio::bestNanoseconds(
        [&] {
            QProcess sha256;
            sha256.setStandardOutputFile(QProcess::nullDevice());
            sha256.start(QStringLiteral("sha256sum"), { archivePath });
            sha256.waitForFinished(-1);
        },
        3);
    const double verification = BenchmarkRatio::bestNanoseconds(
        [&] {
            const SUMappedArchive mapped(archivePath);
            if (SUVerifyArchive(mapped.data(), length, signature, publicKey))
                std::abort();
        },
        3);
    BenchmarkRatio::report("verification of 50 MB", verification, "sha256sum of it", sha256sum);
    return 0;
}
