// SPDX-License-Identifier: GPL-3.0-or-later
// tolvane-release: the keys and signatures of Tolvane's releases.
//   tolvane-release generate-keys --private-key FILE
//   tolvane-release sign --private-key FILE ARCHIVE
//   tolvane-release verify --public-key KEY ARCHIVE SIGNATURE
// Exit status: 0 done (a good signature for verify), 1 failed (a bad one), 2 wrong usage.
#include "SUArchiveVerification.h"
#include "SUEd25519.h"

#include <QCoreApplication>
#include <QFile>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int failed = 1;
constexpr int usage = 2;

int printUsage()
{
    std::fputs("usage: tolvane-release generate-keys --private-key FILE\n"
               "       tolvane-release sign --private-key FILE ARCHIVE\n"
               "       tolvane-release verify --public-key KEY ARCHIVE SIGNATURE\n",
        stderr);
    return usage;
}

int complain(const QString& message)
{
    std::fprintf(stderr, "tolvane-release: %s\n", qPrintable(message));
    return failed;
}

int generateKeys(const QString& privateKeyFile)
{
    // Never over an existing key: losing one means no update can be signed for its users again.
    const int fd = ::open(QFile::encodeName(privateKeyFile).constData(),
        O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0)
        return complain(QStringLiteral("%1: %2").arg(
            privateKeyFile, QString::fromLocal8Bit(std::strerror(errno))));
    const SUEd25519::KeyPair keys = SUEd25519::generateKeyPair();
    const QByteArray pem = SUEd25519::privateKeyPEM(keys.secretKey);
    const bool written = ::write(fd, pem.constData(), size_t(pem.size())) == pem.size();
    if (::close(fd) != 0 || !written) {
        ::unlink(QFile::encodeName(privateKeyFile).constData());
        return complain(QStringLiteral("%1 could not be written").arg(privateKeyFile));
    }
    std::printf("%s\n", keys.publicKey.toBase64().constData());
    return 0;
}

int sign(const QString& privateKeyFile, const QString& archivePath)
{
    QFile keyFile(privateKeyFile);
    if (!keyFile.open(QIODevice::ReadOnly))
        return complain(QStringLiteral("%1: %2").arg(privateKeyFile, keyFile.errorString()));
    QString problem;
    const auto secretKey = SUEd25519::secretKeyFromPEM(keyFile.readAll(), &problem);
    if (!secretKey)
        return complain(QStringLiteral("%1: %2").arg(privateKeyFile, problem));
    const SUMappedArchive archive(archivePath);
    if (!archive.isOpen())
        return complain(archive.errorString());
    const QByteArray signature = SUEd25519::sign(*secretKey, archive.data());
    std::printf("sparkle:edSignature=\"%s\" length=\"%lld\"\n", signature.toBase64().constData(),
        static_cast<long long>(archive.data().size()));
    return 0;
}

int verify(const QString& publicKey, const QString& archivePath, const QString& signature)
{
    const SUMappedArchive archive(archivePath);
    if (!archive.isOpen())
        return complain(archive.errorString());
    if (const auto problem = SUVerifyArchive(archive.data(), 0, signature, publicKey))
        return complain(problem->localizedDescription());
    std::puts("The signature is good.");
    return 0;
}

}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments().mid(1);
    const QString command = arguments.value(0);
    if (command == QLatin1String("generate-keys") && arguments.size() == 3
        && arguments[1] == QLatin1String("--private-key"))
        return generateKeys(arguments[2]);
    if (command == QLatin1String("sign") && arguments.size() == 4
        && arguments[1] == QLatin1String("--private-key"))
        return sign(arguments[2], arguments[3]);
    if (command == QLatin1String("verify") && arguments.size() == 5
        && arguments[1] == QLatin1String("--public-key"))
        return verify(arguments[2], arguments[3], arguments[4]);
    return printUsage();
}
