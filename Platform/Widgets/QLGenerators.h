// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <optional>

// A preview generator bundle (Name.qlgenerator) installed in a QuickLook folder.
struct QLGenerator {
    QString bundlePath;
    // Contents/Linux/<CFBundleExecutable>
    QString executablePath;
    QVariantMap infoDictionary;
    // The type identifiers it draws: LSItemContentTypes of its CFBundleDocumentTypes.
    QStringList contentTypes;
};

namespace QLGenerators {

// The QuickLook folders of the Library folders, user domain first, then the one inside the main
// bundle (Contents/Library/QuickLook).
QStringList searchFolders();

// Every *.qlgenerator bundle of the search folders with a readable Info.plist and an executable
// name: the user's first, then the machine-wide ones, each folder in name order.
QList<QLGenerator> installedGenerators();

// The information dictionaries whose declared types name files by extension: the main bundle's,
// then each generator's, for UTType::identifierForFile.
QList<QVariantMap> typeDeclarations(const QList<QLGenerator>& generators);

// The first of the generators that lists the identifier.
std::optional<QLGenerator> generatorForType(
    const QString& identifier, const QList<QLGenerator>& generators);

}
