// SPDX-License-Identifier: GPL-3.0-or-later
#include "OutputFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace Preview {

QString writeOutputFile(const QString& path, const QByteArray& bytes)
{
    const QFileInfo target(path);
    const auto failure = [&](const QString& why) {
        return QStringLiteral("cannot write %1: %2").arg(QDir::toNativeSeparators(path), why);
    };
    // Made with O_CREAT | O_EXCL under a fresh name: no link can be followed.
    QTemporaryFile file(target.absolutePath() + QStringLiteral("/.") + target.fileName()
        + QStringLiteral(".XXXXXX"));
    if (!file.open())
        return failure(file.errorString());
    if (file.write(bytes) != bytes.size() || !file.flush())
        return failure(file.errorString());
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    // rename(2) replaces the directory entry itself, a link included, in one step.
    if (std::rename(QFile::encodeName(file.fileName()).constData(),
            QFile::encodeName(target.absoluteFilePath()).constData())
        != 0)
        return failure(QString::fromLocal8Bit(std::strerror(errno)));
    file.setAutoRemove(false);
    return {};
}

}
