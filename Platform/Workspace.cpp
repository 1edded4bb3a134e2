// SPDX-License-Identifier: GPL-3.0-or-later
#include "Workspace.h"

#include "SystemLog.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QProcess>
#include <QStringList>

namespace {

const QString fileManagerService = QStringLiteral("org.freedesktop.FileManager1");
const QString fileManagerPath = QStringLiteral("/org/freedesktop/FileManager1");

QUrl folderOf(const QUrl& fileURL)
{
    return QUrl::fromLocalFile(QFileInfo(fileURL.toLocalFile()).absolutePath());
}

// Errors that say nobody serves the file manager interface, as opposed to a file manager that
// answered badly: only these are worth the fallback.
bool noFileManager(const QDBusError& error)
{
    switch (error.type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::UnknownObject:
    case QDBusError::UnknownInterface:
    case QDBusError::UnknownMethod:
        return true;
    default:
        return error.name().startsWith(QStringLiteral("org.freedesktop.DBus.Error.Spawn."));
    }
}

void openFolderInstead(const QUrl& firstFile)
{
    if (!NSWorkspace::sharedWorkspace().openURL(folderOf(firstFile)))
        NSLog(QStringLiteral("WARNING -- could not open the folder of %1")
                  .arg(firstFile.toString(QUrl::FullyEncoded)));
}

}

NSWorkspace& NSWorkspace::sharedWorkspace()
{
    static NSWorkspace workspace;
    return workspace;
}

bool NSWorkspace::openURL(const QUrl& url)
{
    if (!url.isValid() || url.isEmpty())
        return false;
    // A local path works with every opener, also those that do not decode file URIs.
    const QString argument
        = url.isLocalFile() ? url.toLocalFile() : url.toString(QUrl::FullyEncoded);
    return QProcess::startDetached(QStringLiteral("xdg-open"), { argument });
}

void NSWorkspace::activateFileViewerSelectingURLs(const QList<QUrl>& fileURLs)
{
    if (fileURLs.isEmpty())
        return;
    const QUrl firstFile = fileURLs.first();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolderInstead(firstFile);
        return;
    }

    QStringList uris;
    for (const QUrl& url : fileURLs)
        uris.append(url.toString(QUrl::FullyEncoded));
    QDBusMessage call = QDBusMessage::createMethodCall(
        fileManagerService, fileManagerPath, fileManagerService, QStringLiteral("ShowItems"));
    call << uris << QString();

    // The call is asynchronous so that the bus may start a file manager meanwhile (activatable
    // names) without freezing the windows; a bus without any file manager answers with an error.
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
        [firstFile](QDBusPendingCallWatcher* finished) {
            finished->deleteLater();
            const QDBusPendingReply<> reply = *finished;
            if (!reply.isError())
                return;
            if (noFileManager(reply.error())) {
                openFolderInstead(firstFile);
                return;
            }
            NSLog(QStringLiteral("WARNING -- the file manager could not show the files: %1")
                      .arg(reply.error().message()));
        });
}
