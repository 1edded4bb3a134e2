// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUArchiveVerification.h"

#include "SUEd25519.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

SUMappedArchive::SUMappedArchive(const QString& path)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    struct stat status = {};
    if (fd < 0 || ::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        m_error = QStringLiteral("%1 cannot be read: %2")
                      .arg(path, QString::fromLocal8Bit(std::strerror(fd < 0 ? errno : EINVAL)));
        if (fd >= 0)
            ::close(fd);
        return;
    }
    m_size = status.st_size;
    if (m_size > 0) {
        m_map = ::mmap(nullptr, size_t(m_size), PROT_READ, MAP_PRIVATE, fd, 0);
        if (m_map == MAP_FAILED) {
            m_map = nullptr;
            m_error = QStringLiteral("%1 cannot be read: %2")
                          .arg(path, QString::fromLocal8Bit(std::strerror(errno)));
            ::close(fd);
            return;
        }
    }
    ::close(fd);
    m_open = true;
}

SUMappedArchive::~SUMappedArchive()
{
    if (m_map)
        ::munmap(m_map, size_t(m_size));
}

QByteArrayView SUMappedArchive::data() const
{
    return m_map ? QByteArrayView(static_cast<const char*>(m_map), m_size) : QByteArrayView();
}

std::optional<SUUpdaterError> SUVerifyArchive(QByteArrayView archive, qint64 expectedLength,
    const QString& edSignature, const QString& publicEDKey)
{
    SUUpdaterError error;
    if (expectedLength > 0 && archive.size() != expectedLength) {
        error.kind = SUUpdaterError::LengthMismatch;
        error.detail = QStringLiteral("It has %1 bytes instead of %2.")
                           .arg(archive.size())
                           .arg(expectedLength);
        return error;
    }
    const auto key = SUEd25519::fromBase64(publicEDKey, SUEd25519::publicKeySize);
    if (!key) {
        error.kind = SUUpdaterError::NoPublicKey;
        return error;
    }
    if (edSignature.trimmed().isEmpty()) {
        error.kind = SUUpdaterError::SignatureMissing;
        return error;
    }
    const auto signature = SUEd25519::fromBase64(edSignature, SUEd25519::signatureSize);
    if (!signature || !SUEd25519::verify(*key, *signature, archive)) {
        error.kind = SUUpdaterError::SignatureInvalid;
        return error;
    }
    return std::nullopt;
}
