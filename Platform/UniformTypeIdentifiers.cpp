// SPDX-License-Identifier: GPL-3.0-or-later
#include "UniformTypeIdentifiers.h"

#include <QFileInfo>
#include <QHash>
#include <QStringDecoder>
#include <cstring>

namespace UTType {

namespace {

    constexpr char alphabet[] = "abcdefghkmnpqrstuvwxyz0123456789";
    const QString dynamicPrefix = QStringLiteral("dyn.a");
    const QString extensionTagPrefix = QStringLiteral("?0=6:1=");

    void appendDeclarations(const QVariant& list, QList<Declaration>& into)
    {
        for (const QVariant& entry : list.toList()) {
            const QVariantMap declaration = entry.toMap();
            const QString identifier
                = declaration.value(QStringLiteral("UTTypeIdentifier")).toString();
            if (identifier.isEmpty())
                continue;
            const QVariantMap tags
                = declaration.value(QStringLiteral("UTTypeTagSpecification")).toMap();
            into.append(
                { identifier, declaration.value(QStringLiteral("UTTypeDescription")).toString(),
                    stringOrStrings(tags.value(QStringLiteral("public.filename-extension"))),
                    stringOrStrings(tags.value(QStringLiteral("public.mime-type"))) });
        }
    }

    // Names of identifiers that the system itself knows on the original platform.
    const QHash<QString, QString>& wellKnownDescriptions()
    {
        static const QHash<QString, QString> names {
            { QStringLiteral("com.adobe.illustrator.ai-image"),
                QStringLiteral("Adobe Illustrator document") },
            { QStringLiteral("com.adobe.illustrator.ait-template"),
                QStringLiteral("Adobe Illustrator template") },
            { QStringLiteral("dyn.ah62d4rv4ge80c4py"),
                QStringLiteral("Adobe Illustrator template") },
            { QStringLiteral("com.adobe.encapsulated-postscript"),
                QStringLiteral("Encapsulated PostScript") },
            { QStringLiteral("com.adobe.pdf"), QStringLiteral("PDF document") },
        };
        return names;
    }

}

QStringList stringOrStrings(const QVariant& value)
{
    if (value.typeId() == QMetaType::QString)
        return { value.toString() };
    QStringList strings;
    for (const QVariant& item : value.toList()) {
        if (item.typeId() == QMetaType::QString)
            strings << item.toString();
    }
    return strings;
}

QList<Declaration> declarations(const QVariantMap& infoDictionary)
{
    QList<Declaration> result;
    appendDeclarations(infoDictionary.value(QStringLiteral("UTImportedTypeDeclarations")), result);
    appendDeclarations(infoDictionary.value(QStringLiteral("UTExportedTypeDeclarations")), result);
    return result;
}

QStringList documentContentTypes(const QVariantMap& infoDictionary)
{
    QStringList types;
    for (const QVariant& entry :
        infoDictionary.value(QStringLiteral("CFBundleDocumentTypes")).toList())
        types << stringOrStrings(entry.toMap().value(QStringLiteral("LSItemContentTypes")));
    return types;
}

QString dynamicIdentifierForExtension(const QString& extension)
{
    const QByteArray text = (extensionTagPrefix + extension).toUtf8();
    QString result = dynamicPrefix;
    unsigned buffer = 0;
    int bits = 0;
    for (const char byte : text) {
        buffer = (buffer << 8) | static_cast<unsigned char>(byte);
        bits += 8;
        while (bits >= 5) {
            bits -= 5;
            result += QLatin1Char(alphabet[(buffer >> bits) & 0x1f]);
        }
    }
    if (bits > 0)
        result += QLatin1Char(alphabet[(buffer << (5 - bits)) & 0x1f]);
    return result;
}

std::optional<QString> decodeDynamicIdentifier(const QString& identifier)
{
    if (!identifier.startsWith(dynamicPrefix))
        return std::nullopt;
    QByteArray bytes;
    unsigned buffer = 0;
    int bits = 0;
    for (const QChar character : identifier.mid(dynamicPrefix.size())) {
        const char* found = character.unicode() < 128
            ? std::strchr(alphabet, static_cast<char>(character.unicode()))
            : nullptr;
        if (!found || *found == '\0')
            return std::nullopt;
        buffer = (buffer << 5) | static_cast<unsigned>(found - alphabet);
        bits += 5;
        if (bits >= 8) {
            bits -= 8;
            bytes += static_cast<char>((buffer >> bits) & 0xff);
        }
    }
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

std::optional<QString> extensionOfDynamicIdentifier(const QString& identifier)
{
    const std::optional<QString> text = decodeDynamicIdentifier(identifier);
    if (!text || !text->startsWith(extensionTagPrefix))
        return std::nullopt;
    return text->mid(extensionTagPrefix.size());
}

QString identifierForExtension(const QString& extension, const QList<QVariantMap>& infoDictionaries)
{
    for (const QVariantMap& info : infoDictionaries) {
        for (const Declaration& declaration : declarations(info)) {
            if (declaration.extensions.contains(extension, Qt::CaseInsensitive))
                return declaration.identifier;
        }
    }
    return dynamicIdentifierForExtension(extension);
}

QString identifierForFile(const QString& path, const QList<QVariantMap>& infoDictionaries)
{
    const QString name = QFileInfo(path).fileName();
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    // A leading dot marks a hidden file, not an extension.
    if (dot <= 0 || dot == name.size() - 1)
        return dataIdentifier;
    return identifierForExtension(name.mid(dot + 1), infoDictionaries);
}

QString descriptionForIdentifier(
    const QString& identifier, const QList<QVariantMap>& infoDictionaries)
{
    for (const QVariantMap& info : infoDictionaries) {
        for (const Declaration& declaration : declarations(info)) {
            if (declaration.identifier == identifier && !declaration.description.isEmpty())
                return declaration.description;
        }
    }
    for (const QVariantMap& info : infoDictionaries) {
        for (const QVariant& entry : info.value(QStringLiteral("CFBundleDocumentTypes")).toList()) {
            const QVariantMap type = entry.toMap();
            const QString name = type.value(QStringLiteral("CFBundleTypeName")).toString();
            if (!name.isEmpty()
                && stringOrStrings(type.value(QStringLiteral("LSItemContentTypes")))
                       .contains(identifier))
                return name;
        }
    }
    return wellKnownDescriptions().value(identifier);
}

}
