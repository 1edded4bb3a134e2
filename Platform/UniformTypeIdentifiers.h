// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <optional>

// Type identifiers of files, found by file name extension. The declared types of the given
// information dictionaries (UTImportedTypeDeclarations and UTExportedTypeDeclarations) come
// first; an extension that none declares gets a dynamic identifier ("dyn.a...") made the way the
// original platform makes it, so that lists of such identifiers match real files here too.
namespace UTType {

// The identifier of files with no extension at all.
inline const QString dataIdentifier = QStringLiteral("public.data");

struct Declaration {
    QString identifier;
    // UTTypeDescription: the kind as people read it; empty when not declared.
    QString description;
    QStringList extensions;
    // public.mime-type of its tags.
    QStringList mimeTypes;
};

// A value of a property list that may be one string or an array of strings, as a list.
QStringList stringOrStrings(const QVariant& value);

// The imported and exported type declarations of an information dictionary, in that order.
// Entries without an identifier are left out.
QList<Declaration> declarations(const QVariantMap& infoDictionary);

// LSItemContentTypes of every entry of CFBundleDocumentTypes, in order.
QStringList documentContentTypes(const QVariantMap& infoDictionary);

// "dyn.a" + the text "?0=6:1=<extension>" (UTF-8) written 5 bits a character, most significant
// bit first, with the alphabet "abcdefghkmnpqrstuvwxyz0123456789"; the last character is padded
// with zero bits. The extension is taken as it is, case included.
QString dynamicIdentifierForExtension(const QString& extension);

// The text inside a dynamic identifier ("?0=6:1=ait" for "dyn.ah62d4rv4ge80c4py"); nothing
// when the identifier is not one or does not decode to UTF-8 text.
std::optional<QString> decodeDynamicIdentifier(const QString& identifier);
// The file name extension that a dynamic identifier stands for; nothing for anything else.
std::optional<QString> extensionOfDynamicIdentifier(const QString& identifier);

// The first declared identifier whose extensions hold this one (compared without regard to
// case, as file systems of the original platform do), else the dynamic identifier.
QString identifierForExtension(
    const QString& extension, const QList<QVariantMap>& infoDictionaries);
// The identifier for a file by its name: public.data when the name has no extension.
QString identifierForFile(const QString& path, const QList<QVariantMap>& infoDictionaries);

// The kind for people: the declared UTTypeDescription, else the CFBundleTypeName of a document
// type that lists the identifier, else a name for a few well-known identifiers; empty when none.
QString descriptionForIdentifier(
    const QString& identifier, const QList<QVariantMap>& infoDictionaries);

}
