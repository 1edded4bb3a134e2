// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QSet>
#include <QTimer>
#include <QVariant>
#include <QVariantMap>

// A domain of user defaults: a registration domain in memory under a persistent domain stored in
// <user Library>/Preferences/<domain>.plist.
//
// Changes reach the file on their own a moment after they are made (coalesced, when an event loop
// runs), at application exit, when the object is destroyed, and at once on synchronize(). Every
// write replaces the file atomically. synchronize() also takes in what other processes wrote,
// except for keys this object changed since it last wrote, where this object's value wins.
//
// Not thread-safe: use one object from one thread.
class UserDefaults : public QObject {
    Q_OBJECT
public:
    // The defaults of the main bundle's identifier (the executable's name outside a bundle), with
    // the user's preferred languages registered as "AppleLanguages".
    static UserDefaults& standardUserDefaults();

    explicit UserDefaults(const QString& domain, QObject* parent = nullptr);
    ~UserDefaults() override;

    QString domain() const { return m_domain; }
    // The backing file: <user Library>/Preferences/<domain>.plist.
    QString path() const { return m_path; }
    static QString pathForDomain(const QString& domain);

    // The persistent value, else the registered one, else an invalid QVariant.
    QVariant objectForKey(const QString& key) const;
    // Numbers are converted; text counts as true when it starts with Y, y, T, t or a digit 1-9
    // after blanks, a sign and leading zeros ("YES", "true", "1"). Anything else is false.
    // Whether the typed getters take a value for a number (booleans are numbers to them).
    static bool isNumber(const QVariant& value);
    bool boolForKey(const QString& key) const;
    // Numbers are truncated toward zero; text gives its leading integer; anything else 0.
    qint64 integerForKey(const QString& key) const;
    double doubleForKey(const QString& key) const;
    float floatForKey(const QString& key) const;
    // Text as it is, a number as its decimal text, anything else a null string.
    QString stringForKey(const QString& key) const;
    QVariantMap dictionaryForKey(const QString& key) const;
    QVariantList arrayForKey(const QString& key) const;
    QByteArray dataForKey(const QString& key) const;

    // An invalid value removes the key.
    void setObject(const QVariant& value, const QString& key);
    void setBool(bool value, const QString& key) { setObject(value, key); }
    void setInteger(qint64 value, const QString& key) { setObject(value, key); }
    void setDouble(double value, const QString& key) { setObject(value, key); }
    void setFloat(float value, const QString& key) { setObject(value, key); }
    void removeObjectForKey(const QString& key);

    // Adds to the registration domain; later registrations of a key replace earlier ones.
    void registerDefaults(const QVariantMap& registrationDictionary);
    QVariantMap registeredDefaults() const { return m_registered; }
    QVariantMap persistentDomain() const { return m_persistent; }
    // The registration domain with the persistent domain over it.
    QVariantMap dictionaryRepresentation() const;

    // Writes pending changes and takes in changes made by other processes. False when the file
    // could not be written; the changes then stay pending.
    bool synchronize();

signals:
    // Emitted on every assignment or removal of a key, also when the value does not change.
    void changed(const QString& key);

private:
    void scheduleWrite();

    QString m_domain;
    QString m_path;
    QVariantMap m_registered;
    QVariantMap m_persistent;
    QSet<QString> m_changedKeys;
    QTimer m_writeTimer;
};
