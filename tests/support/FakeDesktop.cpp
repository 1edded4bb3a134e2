// SPDX-License-Identifier: GPL-3.0-or-later
#include "FakeDesktop.h"

#include "TestEnvironment.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>

namespace FakeDesktop {

namespace {
    QString openedLog() { return TestEnvironment::home() + "/xdg-open.log"; }
}

void installOpener()
{
    const QString bin = TestEnvironment::home() + "/bin";
    TestEnvironment::writeFile(
        bin + "/xdg-open", "#!/bin/sh\nprintf '%s\\n' \"$1\" >> '" + openedLog().toUtf8() + "'\n");
    QFile::setPermissions(
        bin + "/xdg-open", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("PATH", QFile::encodeName(bin) + ":" + qgetenv("PATH"));
}

QStringList openedURLs()
{
    return QString::fromUtf8(TestEnvironment::readFile(openedLog()))
        .split('\n', Qt::SkipEmptyParts);
}

}

namespace {
// A connection of its own, so that calls from the code under test go through the bus as they
// would to a real file manager, even from the same process.
const QString connectionName = QStringLiteral("fake-file-manager");
}

FakeFileManager::FakeFileManager()
{
    QDBusConnection bus
        = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName);
    m_registered
        = bus.registerObject("/org/freedesktop/FileManager1", this, QDBusConnection::ExportAllSlots)
        && bus.registerService("org.freedesktop.FileManager1");
}

FakeFileManager::~FakeFileManager()
{
    {
        QDBusConnection bus(connectionName);
        bus.unregisterService("org.freedesktop.FileManager1");
        bus.unregisterObject("/org/freedesktop/FileManager1");
    }
    QDBusConnection::disconnectFromBus(connectionName);
}

bool FakeFileManager::waitForCall(int milliseconds)
{
    const qsizetype before = m_calls.size();
    const QDeadlineTimer deadline(milliseconds);
    while (m_calls.size() == before && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return m_calls.size() > before;
}

void FakeFileManager::ShowItems(const QStringList& uris, const QString&) { m_calls.append(uris); }

void FakeFileManager::ShowFolders(const QStringList& uris, const QString&) { m_calls.append(uris); }
