// SPDX-License-Identifier: GPL-3.0-or-later
#include "LinkedFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

namespace Preview {

namespace {

    bool isWindowsPath(const QString& path)
    {
        static const QRegularExpression drive(QStringLiteral("^[A-Za-z]:[\\\\/]|^\\\\\\\\"));
        return drive.match(path).hasMatch();
    }

    // The path the link records, made absolute; empty when the link is not a file.
    QString recordedPath(const QString& recorded, const QDir& folder)
    {
        if (recorded.startsWith(u"file:", Qt::CaseInsensitive))
            return QUrl(recorded).toLocalFile();
        if (isWindowsPath(recorded) || QDir::isAbsolutePath(recorded))
            return recorded;
        if (recorded.contains(u"://") || recorded.isEmpty())
            return {};
        return QDir::cleanPath(folder.filePath(QString(recorded).replace(u'\\', u'/')));
    }

    QString fileNameOf(const QString& path)
    {
        return path.mid(std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\')) + 1);
    }

}

PreviewLink linkedFile(const QString& recorded, const QString& documentPath)
{
    const QDir folder = QFileInfo(documentPath).absoluteDir();
    PreviewLink link;
    link.path = recordedPath(recorded, folder);
    if (link.path.isEmpty()) {
        link.path = recorded;
        return link;
    }
    link.exists = !isWindowsPath(link.path) && QFileInfo(link.path).isFile();
    const QString name = fileNameOf(link.path);
    if (link.exists || name.isEmpty())
        return link;
    for (const QString& candidate :
        { folder.filePath(name), folder.filePath(QStringLiteral("Links/") + name) }) {
        if (QFileInfo(candidate).isFile()) {
            link.path = QDir::cleanPath(candidate);
            link.exists = true;
            break;
        }
    }
    return link;
}

}
