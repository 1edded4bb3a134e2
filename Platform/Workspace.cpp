// SPDX-License-Identifier: GPL-3.0-or-later
#include "Workspace.h"

#include "Bundle.h"
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

QString bundleExecutable(const QString& bundlePath)
{
    const auto bundle = Bundle::bundleWithPath(bundlePath);
    const QString executable = bundle ? bundle->executablePath() : QString();
    return QFileInfo(executable).isExecutable() ? executable : QString();
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

bool NSWorkspace::launchApplication(
    const QString& bundlePath, const QStringList& arguments, qint64* processId)
{
    const QString executable = bundleExecutable(bundlePath);
    return !executable.isEmpty()
        && QProcess::startDetached(executable, arguments, QString(), processId);
}

bool NSWorkspace::launchApplicationAfterProcessExits(const QString& bundlePath, qint64 processId)
{
    const QString executable = bundleExecutable(bundlePath);
    if (executable.isEmpty())
        return false;
    // The script is constant; the process id and the path reach it as arguments, never as text
    // pasted into it.
    static const QString waitThenStart = QStringLiteral(
        "while kill -0 \"$1\" 2>/dev/null; do sleep 0.1; done; shift; exec \"$@\"");
    return QProcess::startDetached(QStringLiteral("/bin/sh"),
        { QStringLiteral("-c"), waitThenStart, QStringLiteral("sh"), QString::number(processId),
            executable });
}
