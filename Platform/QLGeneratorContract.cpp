// SPDX-License-Identifier: GPL-3.0-or-later
#include "QLGeneratorContract.h"

namespace QLGeneratorContract {

namespace {

    QStringList withType(QStringList arguments, const QString& uti)
    {
        if (!uti.isEmpty())
            arguments << TypeOption << uti;
        return arguments;
    }

}

QStringList previewArguments(const QString& file, const QString& uti, const QString& folder)
{
    return withType({ PreviewCommand, file }, uti) << OutputOption << folder;
}

QStringList thumbnailArguments(
    const QString& file, const QString& uti, int size, const QString& picture)
{
    return withType({ ThumbnailCommand, file }, uti)
        << SizeOption << QString::number(size) << OutputOption << picture;
}

QString exitStatusWords(int status)
{
    switch (status) {
    case OtherFailure:
        return QStringLiteral("failed");
    case Usage:
        return QStringLiteral("usage");
    case NotThisKind:
        return QStringLiteral("not a file of this kind");
    case DamagedFile:
        return QStringLiteral("damaged file");
    case UnsupportedVariant:
        return QStringLiteral("unsupported variant");
    default:
        return {};
    }
}

}
