// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Offers, once, to move the application into an Applications folder when it starts from
// anywhere else (typically the Downloads folder or a mounted image). On consent it copies its
// bundle there (with administrator rights when the folder is not writable), moves the old copy
// to the Trash unless it sits on a read-only image, and starts the new copy once this process
// has ended; when an installed copy already runs, it hands over to that one instead. Ticking
// the alert's check box and declining stores true under "moveToApplicationsFolderAlertSuppress"
// in the standard user defaults, and the question is never asked again.
//
// Called while the application finishes launching; may end the process (status 0).
void PFMoveToApplicationsFolderIfNecessary();

// The steps of the move, on paths.
namespace PFMoveApplication {

inline const QString AlertSuppressKey = QStringLiteral("moveToApplicationsFolderAlertSuppress");

// True when the path begins with an Applications folder of any domain, or when any of its
// components is named "Applications".
bool IsInApplicationsFolder(const QString& path);
// The local domain's Applications folder with its links followed; sets isUserDirectory to false.
QString PreferredInstallLocation(bool* isUserDirectory = nullptr);
// True when the path begins with a Downloads folder.
bool IsInDownloadsFolder(const QString& path);
// True when the running bundle lies on a mounted image or removable medium (under /media/,
// /run/media/ or an AppImage's mount) and cannot be written to.
bool IsLaunchedFromDMG();

// Copies source to destination (which must end in ".app") with administrator rights, through
// the privileged executor. The copy goes to a temporary folder beside the destination first and
// replaces an installed copy by renaming, so a copy that fails leaves that installed copy whole.
// canceled tells whether the user dismissed the authentication dialog.
bool AuthorizedInstall(const QString& source, const QString& destination, bool* canceled = nullptr);
// Moves the file or folder to the Trash.
bool Trash(const QString& path);
// Copies the bundle, links as links; a half-made copy is removed again.
bool CopyBundle(const QString& source, const QString& destination);
// Starts the copy at destination once this process has gone, ejects the image the running copy
// came from a few seconds later (when it came from one), and ends the process with status 0.
[[noreturn]] void Relaunch(const QString& destination);

}
