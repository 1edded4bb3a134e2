// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

// The desktop around the application: opening URLs and showing files in the file manager.
class NSWorkspace {
public:
    static NSWorkspace& sharedWorkspace();

    // Opens the URL with the user's preferred application (xdg-open). False when it could not
    // be handed over.
    bool openURL(const QUrl& url);

    // Shows the files selected in the file manager (org.freedesktop.FileManager1.ShowItems on the
    // session bus, with the URIs in the given order). Without a file manager on the bus, opens
    // the folder of the first file.
    void activateFileViewerSelectingURLs(const QList<QUrl>& fileURLs);

    // Starts the executable of the application bundle at the path, detached from this process,
    // with the arguments; its process id in *processId. False when the path holds no bundle with
    // an executable or it could not be started.
    bool launchApplication(
        const QString& bundlePath, const QStringList& arguments = {}, qint64* processId = nullptr);
    // The same, but the application starts only once the process with the given id has ended,
    // so that it can take over what that process holds (its bus name, its place on disk).
    bool launchApplicationAfterProcessExits(const QString& bundlePath, qint64 processId);

private:
    NSWorkspace() = default;
};
