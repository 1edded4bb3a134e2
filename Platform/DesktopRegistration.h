// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

class Bundle;

// Makes the desktop know an application bundle that lives among the user's files, as the
// original platform's launch services know every application they have seen. For a bundle with
// the identifier ID it keeps, in the user's data folder ($XDG_DATA_HOME):
//   applications/ID.desktop          the bundle's Resources/ID.desktop with Exec and TryExec at
//                                    the bundle's executable, Icon ID, and as MimeType the
//                                    document types and URL schemes of its Info.plist and the
//                                    types of its MIME definitions
//   dbus-1/services/ID.service       so that the desktop can start it by its bus name
//   mime/packages/ID.xml             those of the MIME definitions in Resources/ID-mime.xml that
//                                    the machine's MIME database lacks
//   icons/hicolor/scalable/apps/ID.svg  Resources/ID.svg
// and brings the MIME database and the desktop entries' MIME cache up to date. Nothing else
// is touched.
namespace DesktopRegistration {

struct Outcome {
    // The files written or removed.
    QStringList changedFiles;
    // Why nothing could be registered; empty when all went well.
    QString error;
};

// Writes what differs from the bundle's registration; a start from the same place changes
// nothing. Bundles whose executable path holds a control character (a newline, say) or a "%"
// cannot be named in a desktop entry that every desktop reads, and are not registered.
Outcome registerBundle(const Bundle& bundle);

// Removes the files of the identifier's registration and updates the caches, leaving the
// folders as they were before: a folder left empty goes, and so does a cache left with nothing.
Outcome unregister(const QString& bundleIdentifier);

// The executable that the identifier's registration starts; empty when it has none.
QString registeredExecutable(const QString& bundleIdentifier);

// What a start of the bundle does: a bundle in the system domain's Applications folder is
// installed with the machine's own entries and registers nothing, but removes a registration
// whose program is gone, which would hide those entries; any other bundle registers itself.
Outcome updateRegistrationAtLaunch(const Bundle& bundle);

}
