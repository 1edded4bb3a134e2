// SPDX-License-Identifier: GPL-3.0-or-later
#include "SearchPaths.h"

#include <QDir>
#include <QStandardPaths>

namespace {

QString environmentFolder(const char* variable, const QString& fallback)
{
    const QString value = qEnvironmentVariable(variable);
    // The XDG rules ignore relative paths.
    return value.startsWith(QLatin1Char('/')) ? value : fallback;
}

QString userFolder(NSSearchPathDirectory directory)
{
    const QString home = QDir::homePath();
    switch (directory) {
    case NSLibraryDirectory:
        return environmentFolder("XDG_DATA_HOME", home + QStringLiteral("/.local/share"));
    case NSApplicationDirectory:
        return home + QStringLiteral("/Applications");
    case NSDownloadsDirectory: {
        // xdg-user-dirs points a folder the user removed at the home folder: then there is none.
        const QString downloads
            = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
        return QDir(downloads) == QDir(home) ? QString() : downloads;
    }
    }
    return {};
}

QString localFolder(NSSearchPathDirectory directory)
{
    switch (directory) {
    case NSLibraryDirectory:
        return environmentFolder("TOLVANE_LOCAL_LIBRARY", QStringLiteral("/usr/local/share"));
    case NSApplicationDirectory:
        return environmentFolder("TOLVANE_LOCAL_APPLICATIONS", QStringLiteral("/opt"));
    case NSDownloadsDirectory:
        return {};
    }
    return {};
}

QString systemFolder(NSSearchPathDirectory directory)
{
    if (directory != NSApplicationDirectory)
        return {};
    return environmentFolder(
        "TOLVANE_SYSTEM_APPLICATIONS", QStringLiteral(TOLVANE_SYSTEM_APPLICATIONS));
}

QString abbreviateTilde(const QString& path)
{
    const QString home = QDir::homePath();
    if (path == home)
        return QStringLiteral("~");
    if (path.startsWith(home + QLatin1Char('/')))
        return QLatin1Char('~') + path.mid(home.size());
    return path;
}

}

QStringList NSSearchPathForDirectoriesInDomains(
    NSSearchPathDirectory directory, unsigned domainMask, bool expandTilde)
{
    QStringList folders;
    if (domainMask & NSUserDomainMask) {
        const QString folder = userFolder(directory);
        if (!folder.isEmpty())
            folders.append(
                expandTilde ? QDir::cleanPath(folder) : abbreviateTilde(QDir::cleanPath(folder)));
    }
    if (domainMask & NSLocalDomainMask) {
        const QString folder = localFolder(directory);
        if (!folder.isEmpty())
            folders.append(QDir::cleanPath(folder));
    }
    if (domainMask & NSSystemDomainMask) {
        const QString folder = systemFolder(directory);
        if (!folder.isEmpty())
            folders.append(QDir::cleanPath(folder));
    }
    return folders;
}

QString stringByExpandingTildeInPath(const QString& path)
{
    if (path == QStringLiteral("~"))
        return QDir::homePath();
    if (path.startsWith(QStringLiteral("~/")))
        return QDir::homePath() + path.mid(1);
    return path;
}
