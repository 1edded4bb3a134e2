// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariantMap>

// The texts of the files a desktop registration writes, made from what a bundle carries.
namespace DesktopEntryFiles {

// A value of type string in a desktop entry: backslashes, newlines, tabs, returns and a
// leading blank escaped.
QString escapedString(const QString& value);
QString unescapedString(const QString& value);
// One argument of an Exec line: quoted when it holds a character that the desktop entry rules
// reserve, with "%" doubled.
QString execArgument(const QString& argument);
// One argument of a D-Bus service's Exec line, in single quotes as a shell reads it.
QString serviceExecArgument(const QString& argument);

// The [Desktop Entry] group of the template with these keys put in place of the template's own
// (localised variants included): Exec, TryExec, MimeType and, when icon is not empty, Icon.
// Without a template, an entry of type Application named name.
QString desktopEntry(const QString& templateText, const QString& name, const QString& executable,
    const QStringList& mimeTypes, const QString& icon);
// The value of a key of the [Desktop Entry] group, unescaped; null when there is none.
QString desktopEntryValue(const QString& entryText, const QString& key);

// The MIME types that an information dictionary claims: those of its document types (declared
// by their type identifiers or listed with the document type) and x-scheme-handler/<scheme> for
// its URL schemes.
QStringList claimedMimeTypes(const QVariantMap& infoDictionary);

// The types that a shared-mime-info package defines, in order.
QStringList definedMimeTypes(const QString& packageText);
// The package without the definitions of the known types (comments and the rest stay as they
// are); null when nothing of it is left to define, or when it is not a package.
QString packageWithout(const QString& packageText, const QSet<QString>& knownTypes);

}
