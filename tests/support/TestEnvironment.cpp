// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestEnvironment.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

namespace TestEnvironment {

namespace {
    QTemporaryDir* temporaryHome = nullptr;

    void makeAndExport(const char* variable, const QString& path)
    {
        QDir().mkpath(path);
        qputenv(variable, QFile::encodeName(path));
    }
}

void setUp()
{
    tearDown();
    temporaryHome = new QTemporaryDir(QDir::tempPath() + "/tolvane-test-XXXXXX");
    const QString root = temporaryHome->path();
    makeAndExport("HOME", root + "/home");
    makeAndExport("XDG_DATA_HOME", root + "/home/.local/share");
    makeAndExport("XDG_CONFIG_HOME", root + "/home/.config");
    makeAndExport("XDG_CACHE_HOME", root + "/home/.cache");
    makeAndExport("XDG_RUNTIME_DIR", root + "/runtime");
    QFile::setPermissions(
        root + "/runtime", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    makeAndExport("TOLVANE_LOCAL_LIBRARY", root + "/usr-local-share");
    makeAndExport("TOLVANE_LOCAL_APPLICATIONS", root + "/opt");
    qunsetenv("TOLVANE_SYSTEM_VERSION");
}

void tearDown()
{
    delete temporaryHome;
    temporaryHome = nullptr;
}

QString home() { return qEnvironmentVariable("HOME"); }
QString userLibrary() { return qEnvironmentVariable("XDG_DATA_HOME"); }
QString localLibrary() { return qEnvironmentVariable("TOLVANE_LOCAL_LIBRARY"); }

void writeFile(const QString& path, const QByteArray& contents)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    ASSERT_EQ(file.write(contents), contents.size());
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

QString dataPath(const QString& name) { return QStringLiteral(TOLVANE_TEST_DATA "/") + name; }

QStringList mappedFiles(const QStringList& parts)
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        return { QStringLiteral("(/proc/self/maps unreadable)") };
    QStringList found;
    for (const QByteArray& line : maps.readAll().split('\n')) {
        const qsizetype slash = line.indexOf('/');
        const QString path = QString::fromUtf8(line.mid(slash));
        for (const QString& part : parts) {
            if (slash >= 0 && path.contains(part) && !found.contains(path))
                found << path;
        }
    }
    return found;
}

void suppressMoveToApplicationsOffer()
{
    writeFile(userLibrary() + "/Preferences/app.tolvane.Tolvane.plist",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<plist version=\"1.0\"><dict>"
        "<key>moveToApplicationsFolderAlertSuppress</key><true/>"
        "</dict></plist>\n");
}

bool waitUntil(const std::function<bool()>& condition, int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        // Outside a running event loop deleteLater() would otherwise wait for ever.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        // Leaves the processor to the processes under test instead of spinning hot.
        QThread::msleep(5);
    }
    return true;
}

ProgramRun run(
    const QString& program, const QStringList& arguments, const QProcessEnvironment& environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(240000))
        return {};
    return { process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
        QString::fromUtf8(process.readAll()) };
}

}
