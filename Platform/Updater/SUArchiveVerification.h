// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUUpdaterError.h"

#include <QByteArrayView>
#include <QFile>
#include <QString>
#include <optional>

// An archive file mapped into memory: what is verified is exactly what is then unpacked, however
// the file changes on disk meanwhile (the mapping is private).
class SUMappedArchive {
public:
    explicit SUMappedArchive(const QString& path);
    ~SUMappedArchive();
    SUMappedArchive(const SUMappedArchive&) = delete;
    SUMappedArchive& operator=(const SUMappedArchive&) = delete;

    bool isOpen() const { return m_open; }
    QString errorString() const { return m_error; }
    QByteArrayView data() const;

private:
    bool m_open = false;
    QString m_error;
    void* m_map = nullptr;
    qint64 m_size = 0;
};

// Checks a downloaded archive before anything is done with it: its length against the feed's
// (when the feed gives one), then its Ed25519 signature (base64, as in the enclosure) against the
// public key (base64, as in "SUPublicEDKey"). Nothing when both hold; else what failed.
std::optional<SUUpdaterError> SUVerifyArchive(QByteArrayView archive, qint64 expectedLength,
    const QString& edSignature, const QString& publicEDKey);
