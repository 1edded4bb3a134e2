// SPDX-License-Identifier: GPL-3.0-or-later
#include "UserDefaults.h"

#include "Bundle.h"
#include "PropertyList.h"
#include "SearchPaths.h"
#include "StringValues.h"
#include "SystemLog.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <memory>

namespace {

// How long changes gather before they are written on their own.
constexpr int writeDelayMilliseconds = 100;

QString standardDomain()
{
    const QString identifier = Bundle::mainBundle().bundleIdentifier();
    if (!identifier.isEmpty())
        return identifier;
    return QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).fileName();
}

}

UserDefaults& UserDefaults::standardUserDefaults()
{
    static const std::unique_ptr<UserDefaults> defaults = [] {
        auto standard = std::make_unique<UserDefaults>(standardDomain());
        // What the desktop's global settings would give every application.
        QVariantList languages;
        for (const QString& language : QLocale::system().uiLanguages())
            languages.append(language);
        standard->registerDefaults({ { QStringLiteral("AppleLanguages"), languages } });
        return standard;
    }();
    return *defaults;
}

QString UserDefaults::pathForDomain(const QString& domain)
{
    const QStringList libraries
        = NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, true);
    return libraries.value(0) + QStringLiteral("/Preferences/") + domain + QStringLiteral(".plist");
}

UserDefaults::UserDefaults(const QString& domain, QObject* parent)
    : QObject(parent)
    , m_domain(domain)
    , m_path(pathForDomain(domain))
    , m_persistent(PropertyList::readDictionary(m_path).value_or(QVariantMap()))
{
    m_writeTimer.setSingleShot(true);
    m_writeTimer.setInterval(writeDelayMilliseconds);
    connect(&m_writeTimer, &QTimer::timeout, this, [this] { synchronize(); });
    if (auto* application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, [this] { synchronize(); });
}

UserDefaults::~UserDefaults()
{
    if (!m_changedKeys.isEmpty())
        synchronize();
}

QVariant UserDefaults::objectForKey(const QString& key) const
{
    const auto persistent = m_persistent.constFind(key);
    if (persistent != m_persistent.constEnd())
        return *persistent;
    return m_registered.value(key);
}

bool UserDefaults::isNumber(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

bool UserDefaults::boolForKey(const QString& key) const
{
    const QVariant value = objectForKey(key);
    if (value.typeId() == QMetaType::QString)
        return StringValues::boolValue(value.toString());
    return isNumber(value) && value.toDouble() != 0;
}

qint64 UserDefaults::integerForKey(const QString& key) const
{
    const QVariant value = objectForKey(key);
    if (value.typeId() == QMetaType::QString)
        return StringValues::integerValue(value.toString());
    return isNumber(value) ? static_cast<qint64>(value.toDouble()) : 0;
}

double UserDefaults::doubleForKey(const QString& key) const
{
    const QVariant value = objectForKey(key);
    if (value.typeId() == QMetaType::QString)
        return StringValues::doubleValue(value.toString());
    return isNumber(value) ? value.toDouble() : 0;
}

float UserDefaults::floatForKey(const QString& key) const
{
    return static_cast<float>(doubleForKey(key));
}

QString UserDefaults::stringForKey(const QString& key) const
{
    const QVariant value = objectForKey(key);
    if (value.typeId() == QMetaType::QString)
        return value.toString();
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    return isNumber(value) ? value.toString() : QString();
}

QVariantMap UserDefaults::dictionaryForKey(const QString& key) const
{
    const QVariant value = objectForKey(key);
    return value.typeId() == QMetaType::QVariantMap ? value.toMap() : QVariantMap();
}

QVariantList UserDefaults::arrayForKey(const QString& key) const
{
    const QVariant value = objectForKey(key);
    return value.typeId() == QMetaType::QVariantList ? value.toList() : QVariantList();
}

QByteArray UserDefaults::dataForKey(const QString& key) const
{
    const QVariant value = objectForKey(key);
    return value.typeId() == QMetaType::QByteArray ? value.toByteArray() : QByteArray();
}

void UserDefaults::setObject(const QVariant& value, const QString& key)
{
    if (value.isValid())
        m_persistent.insert(key, value);
    else
        m_persistent.remove(key);
    m_changedKeys.insert(key);
    scheduleWrite();
    emit changed(key);
}

void UserDefaults::removeObjectForKey(const QString& key) { setObject(QVariant(), key); }

void UserDefaults::registerDefaults(const QVariantMap& registrationDictionary)
{
    for (auto it = registrationDictionary.begin(); it != registrationDictionary.end(); ++it)
        m_registered.insert(it.key(), it.value());
}

QVariantMap UserDefaults::dictionaryRepresentation() const
{
    QVariantMap merged = m_registered;
    for (auto it = m_persistent.begin(); it != m_persistent.end(); ++it)
        merged.insert(it.key(), it.value());
    return merged;
}

bool UserDefaults::synchronize()
{
    m_writeTimer.stop();
    // What is on disk now is the base; a damaged file gives way to what this object last knew,
    // so that nothing it read is lost.
    QVariantMap onDisk;
    if (const auto file = PropertyList::readDictionary(m_path))
        onDisk = *file;
    else if (QFileInfo::exists(m_path))
        onDisk = m_persistent;

    for (const QString& key : std::as_const(m_changedKeys)) {
        const auto mine = m_persistent.constFind(key);
        if (mine != m_persistent.constEnd())
            onDisk.insert(key, *mine);
        else
            onDisk.remove(key);
    }

    if (!m_changedKeys.isEmpty()) {
        QString error;
        if (!PropertyList::writeXmlAtomically(onDisk, m_path, &error)) {
            NSLog(QStringLiteral("ERROR -- could not write the preferences %1: %2")
                      .arg(m_path, error));
            return false;
        }
        m_changedKeys.clear();
    }
    m_persistent = onDisk;
    return true;
}

void UserDefaults::scheduleWrite()
{
    if (QCoreApplication::instance() && !m_writeTimer.isActive())
        m_writeTimer.start();
}
