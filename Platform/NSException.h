// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <stdexcept>

// An exception with a name and a reason. It aborts the one operation that raised it; the code
// that started that operation (a URL command, a launch step) catches it and logs it.
class NSException : public std::runtime_error {
public:
    NSException(QString name, QString reason)
        : std::runtime_error((name + QStringLiteral(": ") + reason).toStdString())
        , m_name(std::move(name))
        , m_reason(std::move(reason))
    {
    }

    QString name() const { return m_name; }
    QString reason() const { return m_reason; }

private:
    QString m_name;
    QString m_reason;
};

// An access past the end of what a value holds.
inline const QString NSRangeException = QStringLiteral("NSRangeException");
// A message sent to a value that cannot answer it.
inline const QString NSInvalidArgumentException = QStringLiteral("NSInvalidArgumentException");
