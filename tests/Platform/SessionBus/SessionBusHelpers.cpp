// SPDX-License-Identifier: GPL-3.0-or-later
#include "SessionBusHelpers.h"

#include "TestEnvironment.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

bool waitUntil(const std::function<bool()>& condition, int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QEventLoop loop;
        QTimer::singleShot(10, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

FakeOpener::FakeOpener()
    : m_savedPath(qgetenv("PATH"))
    , m_folder(TestEnvironment::home() + QStringLiteral("/fake-bin"))
    , m_log(TestEnvironment::home() + QStringLiteral("/xdg-open.log"))
{
    const QString script = m_folder + QStringLiteral("/xdg-open");
    TestEnvironment::writeFile(script,
        QByteArrayLiteral("#!/bin/sh\n# SPDX-License-Identifier: GPL-3.0-or-later\n")
            + "printf '%s\\n' \"$@\" >> '" + QFile::encodeName(m_log) + "'\n");
    QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("PATH", QFile::encodeName(m_folder) + ':' + m_savedPath);
}

FakeOpener::~FakeOpener() { qputenv("PATH", m_savedPath); }

QStringList FakeOpener::recordedArguments() const
{
    const QString text = QString::fromUtf8(TestEnvironment::readFile(m_log));
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void FakeOpener::remove() { qputenv("PATH", QFile::encodeName(m_folder) + "-empty"); }
