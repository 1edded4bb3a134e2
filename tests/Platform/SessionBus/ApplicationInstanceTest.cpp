// SPDX-License-Identifier: GPL-3.0-or-later
#include "ApplicationInstance.h"

#include "TestEnvironment.h"

#include <QDBusConnection>
#include <QDir>
#include <QProcess>
#include <gtest/gtest.h>
#include <memory>

namespace {

const QString identifier = QStringLiteral("app.tolvane.SessionBusTest");

// A later launch, run as its own process: its role, and what it printed on failure.
struct Launch {
    QString role;
    QString errors;
};

// Runs instance_probe while this process's event loop keeps serving the bus.
Launch launch(const QStringList& arguments, const QString& workingFolder = QDir::homePath(),
    const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
{
    QProcess probe;
    probe.setProcessEnvironment(environment);
    probe.setWorkingDirectory(workingFolder);
    probe.start(QStringLiteral(INSTANCE_PROBE), QStringList { identifier } + arguments);
    if (!TestEnvironment::waitUntil([&] { return probe.state() == QProcess::NotRunning; }, 15000)) {
        probe.kill();
        probe.waitForFinished();
        return { QStringLiteral("(hung)"), QString() };
    }
    return { QString::fromUtf8(probe.readAllStandardOutput()).trimmed(),
        QString::fromUtf8(probe.readAllStandardError()) };
}

// Claimed once more by the primary, it stays primary; a later launch with arguments opens them
// there, one without activates it.
TEST(ApplicationInstance, ALaterLaunchForwardsItsFilesAndURLsOrActivates)
{
    ApplicationInstance primary(identifier);
    ASSERT_EQ(primary.claim({ "ignored.ai" }), ApplicationInstance::Role::Primary);
    EXPECT_EQ(primary.claim({ "a.ai" }), ApplicationInstance::Role::Primary);
    QList<QStringList> opened;
    int activations = 0;
    QObject::connect(&primary, &ApplicationInstance::openRequested,
        [&](const QStringList& uris) { opened.append(uris); });
    QObject::connect(&primary, &ApplicationInstance::activateRequested, [&] { ++activations; });
    const QString folder = TestEnvironment::home() + QStringLiteral("/my documents");
    ASSERT_TRUE(QDir().mkpath(folder));

    const Launch second
        = launch({ "a b.ai", "tolvane://settings/about", "/art/Grüße.eps", "sub/c.indd" }, folder);

    EXPECT_EQ(second.role, "Forwarded") << second.errors.toStdString();
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return !opened.isEmpty(); }, 10000));
    const QString base = QStringLiteral("file://") + TestEnvironment::home() + "/my%20documents";
    const QStringList expected { base + "/a%20b.ai", "tolvane://settings/about",
        "file:///art/Gr%C3%BC%C3%9Fe.eps", base + "/sub/c.indd" };
    EXPECT_EQ(opened, QList<QStringList> { expected });
    EXPECT_EQ(activations, 0);

    EXPECT_EQ(launch({}).role, "Forwarded");
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return activations > 0; }, 10000));
    EXPECT_EQ(activations, 1);
    EXPECT_EQ(opened.size(), 1);
}

TEST(ApplicationInstance, WithoutASessionBusTheLaunchHandlesItsArgumentsItself)
{
    // Not set at all, and set to where nobody listens.
    for (const QString& address : { QString(), QStringLiteral("unix:path=/nonexistent/bus") }) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        environment.remove(QStringLiteral("DISPLAY"));
        if (!address.isNull())
            environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address);
        const Launch alone = launch({ "a.ai" }, QDir::homePath(), environment);
        EXPECT_EQ(alone.role, "Alone") << alone.errors.toStdString();
    }
}

}
