// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>

// Unpacks an update archive (.tar.xz, .tar.gz or .zip, recognised by their contents) into a
// folder through libarchive. Nothing may land outside that folder: an entry with an absolute path
// or a ".." part, a link that points out of the folder, an entry written through a link, and
// anything but files, folders and links is refused, and the unpacking stops there. Permissions
// are kept without set-user and set-group bits; owners are not.
namespace SUUnarchiver {

// The archive's bytes into the folder, which must exist. False, and why in *error, when the
// archive is damaged or an entry is refused; what was unpacked by then is left for the caller to
// remove with the folder.
bool unpack(QByteArrayView archive, const QString& folder, QString* error);

}
