// SPDX-License-Identifier: GPL-3.0-or-later
#include "DesktopEntryFiles.h"

#include "UniformTypeIdentifiers.h"

#include <QHash>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace DesktopEntryFiles {

namespace {

    const QString entryGroup = QStringLiteral("[Desktop Entry]");

    // A line "Key=value" or "Key[locale]=value" of the keys put in by desktopEntry().
    bool isReplacedKey(const QString& line)
    {
        static const QRegularExpression keys(
            QStringLiteral(R"(^\s*(Exec|TryExec|MimeType|Icon)(\[[^\]]*\])?\s*=)"));
        return keys.match(line).hasMatch();
    }

}

QString escapedString(const QString& value)
{
    QString escaped;
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value.at(i);
        if (c == u'\\')
            escaped += QStringLiteral("\\\\");
        else if (c == u'\n')
            escaped += QStringLiteral("\\n");
        else if (c == u'\t')
            escaped += QStringLiteral("\\t");
        else if (c == u'\r')
            escaped += QStringLiteral("\\r");
        else if (c == u' ' && i == 0)
            escaped += QStringLiteral("\\s");
        else
            escaped += c;
    }
    return escaped;
}

QString unescapedString(const QString& value)
{
    QString text;
    for (qsizetype i = 0; i < value.size(); ++i) {
        QChar c = value.at(i);
        if (c == u'\\' && i + 1 < value.size()) {
            c = value.at(++i);
            if (c == u's')
                c = u' ';
            else if (c == u'n')
                c = u'\n';
            else if (c == u't')
                c = u'\t';
            else if (c == u'r')
                c = u'\r';
        }
        text += c;
    }
    return text;
}

QString execArgument(const QString& argument)
{
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    const bool needsQuotes = std::any_of(
        argument.begin(), argument.end(), [](QChar c) { return reserved.contains(c); });
    QString quoted = argument;
    if (needsQuotes) {
        static const QRegularExpression escapedInQuotes(QStringLiteral(R"(([\"`$\\]))"));
        quoted.replace(escapedInQuotes, QStringLiteral(R"(\\1)"));
        quoted = u'"' + quoted + u'"';
    }
    return quoted.replace(u'%', QStringLiteral("%%"));
}

QString serviceExecArgument(const QString& argument)
{
    QString quoted = argument;
    return u'\'' + quoted.replace(u'\'', QStringLiteral("'\\''")) + u'\'';
}

QString desktopEntry(const QString& templateText, const QString& name, const QString& executable,
    const QStringList& mimeTypes, const QString& icon)
{
    QStringList keys { QStringLiteral("Exec=") + escapedString(execArgument(executable))
            + QStringLiteral(" %U"),
        QStringLiteral("TryExec=") + escapedString(executable) };
    if (!mimeTypes.isEmpty())
        keys << QStringLiteral("MimeType=") + mimeTypes.join(u';') + u';';
    if (!icon.isEmpty())
        keys << QStringLiteral("Icon=") + escapedString(icon);

    QStringList lines = templateText.split(u'\n');
    if (!lines.isEmpty() && lines.constLast().isEmpty())
        lines.removeLast();
    if (!lines.contains(entryGroup))
        lines = QStringList { entryGroup, QStringLiteral("Type=Application"),
            QStringLiteral("Name=") + escapedString(name) };

    QStringList entry;
    bool inEntryGroup = false;
    // The keys go at the end of the group, before the blank lines that end it.
    const auto placeKeys = [&] {
        qsizetype end = entry.size();
        while (end > 0 && entry.at(end - 1).trimmed().isEmpty())
            --end;
        for (qsizetype i = 0; i < keys.size(); ++i)
            entry.insert(end + i, keys.at(i));
    };
    for (const QString& line : std::as_const(lines)) {
        if (line.trimmed().startsWith(u'[')) {
            if (inEntryGroup)
                placeKeys();
            inEntryGroup = line.trimmed() == entryGroup;
        } else if (inEntryGroup && isReplacedKey(line)) {
            continue;
        }
        entry << line;
    }
    if (inEntryGroup)
        placeKeys();
    return entry.join(u'\n') + u'\n';
}

QString desktopEntryValue(const QString& entryText, const QString& key)
{
    bool inEntryGroup = false;
    for (const QString& line : entryText.split(u'\n')) {
        const QString trimmed = line.trimmed();
        if (trimmed.startsWith(u'[')) {
            inEntryGroup = trimmed == entryGroup;
            continue;
        }
        const qsizetype equals = trimmed.indexOf(u'=');
        if (inEntryGroup && equals > 0 && trimmed.left(equals).trimmed() == key)
            return unescapedString(trimmed.mid(equals + 1).trimmed());
    }
    return {};
}

QStringList claimedMimeTypes(const QVariantMap& infoDictionary)
{
    QHash<QString, QStringList> declared;
    for (const UTType::Declaration& declaration : UTType::declarations(infoDictionary))
        declared[declaration.identifier] += declaration.mimeTypes;
    QStringList types;
    for (const QVariant& entry :
        infoDictionary.value(QStringLiteral("CFBundleDocumentTypes")).toList()) {
        const QVariantMap documentType = entry.toMap();
        types
            += UTType::stringOrStrings(documentType.value(QStringLiteral("CFBundleTypeMIMETypes")));
        for (const QString& identifier :
            UTType::stringOrStrings(documentType.value(QStringLiteral("LSItemContentTypes"))))
            types += declared.value(identifier);
    }
    for (const QVariant& entry :
        infoDictionary.value(QStringLiteral("CFBundleURLTypes")).toList()) {
        for (const QString& scheme :
            UTType::stringOrStrings(entry.toMap().value(QStringLiteral("CFBundleURLSchemes"))))
            types += QStringLiteral("x-scheme-handler/") + scheme.toLower();
    }
    types.removeDuplicates();
    return types;
}

QStringList definedMimeTypes(const QString& packageText)
{
    QStringList types;
    QXmlStreamReader reader(packageText);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == u"mime-type")
            types << reader.attributes().value(QLatin1String("type")).toString();
    }
    return types;
}

QString packageWithout(const QString& packageText, const QSet<QString>& knownTypes)
{
    QXmlStreamReader reader(packageText);
    QString package;
    qsizetype copiedUpTo = 0;
    bool isPackage = false;
    int keptTypes = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == u"mime-info") {
            isPackage = true;
        } else if (reader.isStartElement() && reader.name() == u"mime-type") {
            if (knownTypes.contains(reader.attributes().value(QLatin1String("type")).toString())) {
                // The reader stands after the start tag; the element's text begins at its "<".
                const qsizetype start = packageText.lastIndexOf(
                    QStringLiteral("<mime-type"), reader.characterOffset());
                package += packageText.mid(copiedUpTo, start - copiedUpTo);
                reader.skipCurrentElement();
                copiedUpTo = reader.characterOffset();
            } else {
                ++keptTypes;
            }
        }
    }
    if (reader.hasError() || !isPackage || keptTypes == 0)
        return {};
    return package + packageText.mid(copiedUpTo);
}

}
