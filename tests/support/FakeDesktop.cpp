// SPDX-License-Identifier: GPL-3.0-or-later
#include "FakeDesktop.h"

#include "TestEnvironment.h"

#include <QDBusConnection>
#include <QFile>

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

namespace {
const QString connectionName = QStringLiteral("fake-file-manager");
const QString serviceName = QStringLiteral("org.freedesktop.FileManager1");
const QString objectPath = QStringLiteral("/org/freedesktop/FileManager1");
}

FakeFileManager::FakeFileManager()
{
    QDBusConnection bus
        = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName);
    m_registered = bus.registerObject(objectPath, this, QDBusConnection::ExportAllSlots)
        && bus.registerService(serviceName);
}

FakeFileManager::~FakeFileManager()
{
    {
        QDBusConnection bus(connectionName);
        bus.unregisterService(serviceName);
        bus.unregisterObject(objectPath);
    }
    QDBusConnection::disconnectFromBus(connectionName);
}

bool FakeFileManager::waitForCall(int milliseconds)
{
    const qsizetype before = m_calls.size();
    return TestEnvironment::waitUntil([&] { return m_calls.size() > before; }, milliseconds);
}

void FakeFileManager::ShowItems(const QStringList& uris, const QString& startupId)
{
    m_calls.append(uris);
    m_startupIds.append(startupId);
}

void FakeFileManager::ShowFolders(const QStringList& uris, const QString& id)
{
    ShowItems(uris, id);
}
