// SPDX-License-Identifier: GPL-3.0-or-later
#include "VistrelUpdateURL.h"

#include "ProcessInfo.h"
#include "QXUtilities.h"
#include "VistrelUtilities.h"

#include <QLocale>
#include <QStringList>

namespace {

const QString requestFormat = QStringLiteral(
    "http://%@/cgi-bin/software/softwareupdate.cgi?su_ver=%@&app=%@&ver=%@&rel=%@&stage=%@&plat=%@&"
    "os_ver=%@&end=%@&lang=%@");
// How a missing value prints.
const QString nullText = QStringLiteral("(null)");

// The value as the platform's string formatting prints an object.
QString description(const QVariant& value)
{
    if (!value.isValid())
        return nullText;
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    case QMetaType::Double:
    case QMetaType::Float:
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    default:
        return value.toString();
    }
}

// Each "%@" of the format replaced by the next argument, in one pass, so that a "%@" inside an
// argument stays as it is.
QString formatObjects(const QString& format, const QStringList& arguments)
{
    QString result;
    qsizetype next = 0;
    qsizetype from = 0;
    for (qsizetype at = format.indexOf(u"%@"); at >= 0; at = format.indexOf(u"%@", from)) {
        result += QStringView(format).mid(from, at - from);
        result += arguments.value(next++);
        from = at + 2;
    }
    return result.append(QStringView(format).mid(from));
}

QString systemVersionText()
{
    std::int32_t response = 0;
    if (Gestalt(gestaltSystemVersion, &response) != 0)
        return nullText;
    return QString::number(static_cast<std::uint32_t>(response), 16).toUpper();
}

}

QString VTUpdateHost()
{
    const QString overridden = qEnvironmentVariable("TOLVANE_UPDATE_HOST");
    return overridden.isEmpty() ? QStringLiteral("updates.tolvane.example") : overridden;
}

QString VTUpdateURLStringWithHost(const QString& host, const std::optional<QVariantMap>& info)
{
    const auto field = [&info](const char* key) {
        return description(info ? info->value(QLatin1String(key)) : QVariant());
    };
    QString byteOrder = QStringLiteral("big");
    if (CFByteOrderGetCurrent() == CFByteOrderLittleEndian)
        byteOrder = QStringLiteral("little");

    QString url = formatObjects(requestFormat,
        { host, QStringLiteral("1.0"), field("CFBundleName"), field("CFBundleShortVersionString"),
            field("QXReleaseVersion"), field("QXReleaseStage"), QStringLiteral("MacOSX"),
            systemVersionText(), byteOrder, QStringLiteral("en") });
    return url.replace(QLatin1Char(' '), QLatin1String("%20"));
}

QString VTUpdateURLString()
{
    return VTUpdateURLStringWithHost(VTUpdateHost(), VTPluginInfoDictionary());
}

QString VTUpdateURLStringForXML() { return VTUpdateURLString() + QStringLiteral("&form=XML"); }

QString VTUpdateURLStringForHTTP()
{
    return VTUpdateURLString() + QStringLiteral("&form=HTTP&ref=quicklook");
}
