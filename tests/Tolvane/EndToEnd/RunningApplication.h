// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
// What the end-to-end tests share: copies of the built Tolvane.app, the programs they run, and
// the instance that owns the application's name on the session bus.
#include "PropertyList.h"
#include "TestEnvironment.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <gtest/gtest.h>

namespace RunningApplication {

inline const QString busName = QStringLiteral("app.tolvane.Tolvane");

// Runs a program to its end; its standard output, trimmed.
inline QString output(const QString& program, const QStringList& arguments,
    const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(120000)) << program.toStdString();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

// The process id of the instance that owns the bus name; 0 when none does.
inline qint64 busNameOwner()
{
    const auto pid = QDBusConnection::sessionBus().interface()->servicePid(busName);
    return pid.isValid() ? qint64(pid.value()) : 0;
}

// The system's environment, for the test's X server.
inline QProcessEnvironment xEnvironment()
{
    EXPECT_FALSE(qgetenv("DISPLAY").isEmpty()) << "needs an X server (xvfb-run)";
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "xcb");
    return environment;
}

inline void changeInfo(const QString& bundle, const QVariantMap& changes)
{
    const QString path = bundle + "/Contents/Info.plist";
    QVariantMap info = PropertyList::readDictionary(path).value_or(QVariantMap());
    for (auto it = changes.begin(); it != changes.end(); ++it)
        info.insert(it.key(), it.value());
    ASSERT_TRUE(PropertyList::writeXmlAtomically(info, path));
}

// A copy of the built bundle, with `changes` to its information dictionary.
inline void copyBundle(const QString& bundle, const QVariantMap& changes = {})
{
    QDir().mkpath(QFileInfo(bundle).absolutePath());
    ASSERT_EQ(QProcess::execute("cp", { "-a", TOLVANE_APP_BUNDLE, bundle }), 0);
    changeInfo(bundle, changes);
}

// Ends the process if it still runs.
inline void stop(QProcess& process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(20000))
        process.kill();
    process.waitForFinished();
}

}
