// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <optional>

// Ed25519 signatures as updates are signed with them: a signature of 64 bytes over the whole
// archive, keys and signatures written in base64. Keys are raw: a public key of 32 bytes, a secret
// key of 64 (the 32-byte seed followed by the public key). A private key file holds the seed as
// PKCS#8 in PEM, the form other Ed25519 tools read and write.
namespace SUEd25519 {

constexpr qsizetype publicKeySize = 32;
constexpr qsizetype secretKeySize = 64;
constexpr qsizetype signatureSize = 64;

struct KeyPair {
    QByteArray publicKey;
    QByteArray secretKey;
};

KeyPair generateKeyPair();
// The public half of a secret key.
QByteArray publicKeyOf(const QByteArray& secretKey);

QByteArray privateKeyPEM(const QByteArray& secretKey);
// The secret key of a PEM private key file; nothing, and why in *error, when it is not one.
std::optional<QByteArray> secretKeyFromPEM(const QByteArray& pem, QString* error = nullptr);

QByteArray sign(const QByteArray& secretKey, QByteArrayView message);
// True only for a signature that this public key made over exactly this message.
bool verify(const QByteArray& publicKey, const QByteArray& signature, QByteArrayView message);

// Strict base64 of exactly `size` bytes (blanks around it allowed); nothing otherwise.
std::optional<QByteArray> fromBase64(const QString& text, qsizetype size);

}
