// SPDX-License-Identifier: GPL-3.0-or-later
#include "QLGenerators.h"

#include "Bundle.h"
#include "PropertyList.h"
#include "SearchPaths.h"
#include "UniformTypeIdentifiers.h"

#include <QDir>

namespace QLGenerators {

QStringList searchFolders()
{
    QStringList folders;
    for (const QString& library : NSSearchPathForDirectoriesInDomains(
             NSLibraryDirectory, NSUserDomainMask | NSLocalDomainMask, true))
        folders << QDir(library).filePath(QStringLiteral("QuickLook"));
    // Last, the generators that come inside the application's own bundle, so that a copy of the
    // application previews its files without installing anything; an installed one wins.
    folders << Bundle::mainBundle().contentsPath() + QStringLiteral("/Library/QuickLook");
    return folders;
}

QList<QLGenerator> installedGenerators()
{
    QList<QLGenerator> generators;
    for (const QString& folder : searchFolders()) {
        const QDir dir(folder);
        const QStringList bundles = dir.entryList(
            { QStringLiteral("*.qlgenerator") }, QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
        for (const QString& name : bundles) {
            const QDir contents(dir.filePath(name + QStringLiteral("/Contents")));
            const std::optional<QVariantMap> info
                = PropertyList::readDictionary(contents.filePath(QStringLiteral("Info.plist")));
            if (!info)
                continue;
            const QString executable = info->value(QStringLiteral("CFBundleExecutable")).toString();
            if (executable.isEmpty() || executable.contains(QLatin1Char('/')))
                continue;
            generators.append(
                { dir.filePath(name), contents.filePath(QStringLiteral("Linux/") + executable),
                    *info, UTType::documentContentTypes(*info) });
        }
    }
    return generators;
}

QList<QVariantMap> typeDeclarations(const QList<QLGenerator>& generators)
{
    QList<QVariantMap> declarations { Bundle::mainBundle().infoDictionary() };
    for (const QLGenerator& generator : generators)
        declarations << generator.infoDictionary;
    return declarations;
}

std::optional<QLGenerator> generatorForType(
    const QString& identifier, const QList<QLGenerator>& generators)
{
    for (const QLGenerator& generator : generators) {
        if (generator.contentTypes.contains(identifier))
            return generator;
    }
    return std::nullopt;
}

}
