// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariantMap>

// Bundles and update archives made by the tests, through libarchive's writer.
namespace UpdateArchives {

enum class Format { TarXz, TarGz, Zip };

struct Entry {
    enum Kind { File, Folder, SymbolicLink, HardLink };
    QByteArray path;
    QByteArray contents; // a file's bytes, or a link's target
    Kind kind = File;
    int mode = 0644;
};

// A bundle at path: Contents/Info.plist with the identifier, version and extra keys, and
// Contents/Linux/run, an executable with the given script.
void makeBundle(const QString& path, const QString& identifier, const QString& version,
    const QByteArray& script, const QVariantMap& extraInfo = {});

// Every file, folder and link under the folder, with paths relative to its parent (so the
// archive holds the folder itself at its top).
QList<Entry> entriesOf(const QString& folder);
QByteArray pack(const QList<Entry>& entries, Format format);

// A listing of everything under the folder with kinds, modes, contents and link targets, to
// compare a bundle before and after.
QString fingerprint(const QString& folder);

}
