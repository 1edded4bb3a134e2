// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QtGlobal>

// A dotted version such as 10.13.6. No invariants: negative numbers are compared and printed
// like any others.
struct QXVersion {
    qint64 major = 0;
    qint64 minor = 0;
    qint64 patch = 0;
};

QXVersion QXVersionMake(qint64 major, qint64 minor, qint64 patch);

// The running system's version, read afresh on every call.
QXVersion QXVersionCurrentOperatingSystem();
// A placeholder that nothing calls; always 0.0.0.
QXVersion QXVersionCurrentApplication();

// Lexicographic on (major, minor, patch): -1, 0 or 1. In this and the predicates the first
// argument is the version asked about, the second the reference.
int QXVersionCompare(QXVersion a, QXVersion b);
bool QXVersionIsGreaterThanVersion(QXVersion a, QXVersion b);
bool QXVersionIsGreaterThanOrEqualToVersion(QXVersion a, QXVersion b);
bool QXVersionIsEqualToVersion(QXVersion a, QXVersion b);
bool QXVersionIsLessThanOrEqualToVersion(QXVersion a, QXVersion b);
bool QXVersionIsLessThanVersion(QXVersion a, QXVersion b);

// "10.9" when the patch is below 1 (a negative patch too), else "10.9.2".
QString NSStringFromQXVersion(QXVersion version);
QString NSStringFromQXVersionIncludingZeroPatch(bool includeZeroPatch, QXVersion version);

// Never fails: each of the first three dot-separated components gives the integer its leading
// digits make (after blanks and an optional sign), 0 when there are none. Fields without a
// component stay 0; a null text gives 0.0.0.
QXVersion QXVersionFromString(const QString& text);

// The system version, read once when the one instance is made and kept for the process's life.
class QXVersionInfo {
public:
    // Safe to call from any thread; the instance is made once and never freed.
    static const QXVersionInfo& sharedVersionInfo();

    QXVersion currentOperatingSystemVersion() const { return _currentOperatingSystemVersion; }

    QXVersionInfo(const QXVersionInfo&) = delete;
    QXVersionInfo& operator=(const QXVersionInfo&) = delete;

private:
    QXVersionInfo();

    // Written only by the constructor, before the instance is published.
    QXVersion _currentOperatingSystemVersion;
};
