// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
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

private:
    NSWorkspace() = default;
};
