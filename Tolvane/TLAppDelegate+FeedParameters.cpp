// SPDX-License-Identifier: GPL-3.0-or-later
// What the application tells the update server about itself with every feed request.
#include "Bundle.h"
#include "NSException.h"
#include "ProcessInfo.h"
#include "QXVersionInfo.h"
#include "TLAppDelegate.h"
#include "UserDefaults.h"

#include <cstdint>

namespace {

// "64" when the first kernel name that answers says the processor is 64-bit capable.
QString processorBits()
{
    std::int32_t value = 0;
    std::size_t size = sizeof(value);
    for (const char* name :
        { "hw.cpu64bit_capable", "hw.optional.x86_64", "hw.optional.64bitops" }) {
        if (sysctlbyname(name, &value, &size, nullptr, 0) == 0)
            return value == 1 ? QStringLiteral("64") : QStringLiteral("32");
    }
    return QStringLiteral("32");
}

}

QList<QVariantMap> TLAppDelegate::feedParametersForUpdater(SUUpdater*, bool sendingSystemProfile)
{
    QVariantMap parameters;
    const auto addFromInfoDictionary = [&parameters](const QString& name, const QString& key) {
        const QVariant value = Bundle::mainBundle().objectForInfoDictionaryKey(key);
        if (value.isValid())
            parameters.insert(name, value.toString());
    };
    addFromInfoDictionary(QStringLiteral("app"), QStringLiteral("CFBundleName"));
    addFromInfoDictionary(QStringLiteral("appid"), QStringLiteral("QXAppID"));
    parameters.insert(QStringLiteral("type"), QStringLiteral("RA"));
    addFromInfoDictionary(QStringLiteral("appver"), QStringLiteral("CFBundleShortVersionString"));
    parameters.insert(QStringLiteral("osver"),
        NSStringFromQXVersionIncludingZeroPatch(true, QXVersionCurrentOperatingSystem()));
    parameters.insert(QStringLiteral("arch"), QStringLiteral("Intel"));
    parameters.insert(QStringLiteral("archbits"), processorBits());
    const QVariant languages
        = UserDefaults::standardUserDefaults().objectForKey(QStringLiteral("AppleLanguages"));
    if (languages.typeId() == QMetaType::QVariantList) {
        const QVariantList list = languages.toList();
        if (list.isEmpty())
            throw NSException(
                NSRangeException, QStringLiteral("\"AppleLanguages\" is an empty list"));
        parameters.insert(QStringLiteral("lang"), list.first().toString());
    }
    parameters.insert(QStringLiteral("profile"),
        sendingSystemProfile ? QStringLiteral("true") : QStringLiteral("false"));

    QList<QVariantMap> records;
    records.reserve(parameters.size());
    for (auto it = parameters.begin(); it != parameters.end(); ++it)
        records.append(
            { { QStringLiteral("key"), it.key() }, { QStringLiteral("value"), it.value() } });
    return records;
}
