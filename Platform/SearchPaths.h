// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

// The platform's standard folders, per domain:
//   Library:      user $XDG_DATA_HOME (default ~/.local/share), local /usr/local/share
//   Applications: user ~/Applications, local /opt, system the folder that the installation
//                 (cmake --install, the Debian package) puts Tolvane.app into
//   Downloads:    the XDG user folder DOWNLOAD (user domain only; none when it is the home)
// The machine's folders can be moved with TOLVANE_LOCAL_LIBRARY, TOLVANE_LOCAL_APPLICATIONS and
// TOLVANE_SYSTEM_APPLICATIONS, so that a machine-wide installation can be tried without root.

enum NSSearchPathDomainMask : unsigned {
    NSUserDomainMask = 1,
    NSLocalDomainMask = 2,
    NSSystemDomainMask = 8,
    NSAllDomainsMask = 0xffff,
};

enum NSSearchPathDirectory {
    NSApplicationDirectory,
    NSLibraryDirectory,
    NSDownloadsDirectory,
};

// The folders of the given kind in the given domains, user domain first, then local, then system.
// With expandTilde false a folder under the home folder is written with a leading "~".
QStringList NSSearchPathForDirectoriesInDomains(
    NSSearchPathDirectory directory, unsigned domainMask, bool expandTilde);

// The home folder with a leading "~" or "~/" of a path replaced by it.
QString stringByExpandingTildeInPath(const QString& path);
