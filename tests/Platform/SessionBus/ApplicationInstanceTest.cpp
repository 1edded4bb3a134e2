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

// Records what reaches the primary instance.
struct Received {
    explicit Received(ApplicationInstance& instance)
    {
        QObject::connect(&instance, &ApplicationInstance::openRequested,
            [this](const QStringList& uris) { opened.append(uris); });
        QObject::connect(
            &instance, &ApplicationInstance::activateRequested, [this] { ++activations; });
    }
    QList<QStringList> opened;
    int activations = 0;
};

TEST(ApplicationInstance, ObjectPathFollowsTheIdentifier)
{
    EXPECT_EQ(ApplicationInstance::objectPath("app.tolvane.Tolvane"), "/app/tolvane/Tolvane");
    EXPECT_EQ(ApplicationInstance::objectPath("org.example.my-app"), "/org/example/my_app");
}

struct UriCase {
    const char* name;
    QString argument;
    QString uri; // "{wd}" stands for the working folder
};

void PrintTo(const UriCase& uriCase, std::ostream* out) { *out << uriCase.name; }

class UrisFromArguments : public testing::TestWithParam<UriCase> { };

TEST_P(UrisFromArguments, MakesOneURIPerArgument)
{
    const QString folder = TestEnvironment::home() + QStringLiteral("/documents");
    TestEnvironment::writeFile(folder + QStringLiteral("/notes:draft.ai"), "x");
    const QString expected = QString(GetParam().uri).replace(QStringLiteral("{wd}"), folder);
    EXPECT_EQ(ApplicationInstance::urisFromArguments({ GetParam().argument }, folder),
        QStringList { expected });
}

INSTANTIATE_TEST_SUITE_P(ApplicationInstance, UrisFromArguments,
    testing::Values(
        UriCase { "CommandURLStaysAsGiven", "tolvane://reveal/image?path=%2FUsers%2Fx%2Fa%20b.png",
            "tolvane://reveal/image?path=%2FUsers%2Fx%2Fa%20b.png" },
        UriCase { "FileURLStays", "file:///x", "file:///x" },
        UriCase { "OtherSchemeStays", "mailto:someone@tolvane.example",
            "mailto:someone@tolvane.example" },
        UriCase { "RelativePathWithBlank", "a b.ai", "file://{wd}/a%20b.ai" },
        UriCase { "NonASCIIPath", "Grüße.eps", "file://{wd}/Gr%C3%BC%C3%9Fe.eps" },
        UriCase { "AbsolutePathWithURLCharacters", "/art/#1?.ai", "file:///art/%231%3F.ai" },
        UriCase { "AbsolutePathWithColon", "/a:b/c.ai", "file:///a:b/c.ai" },
        UriCase { "DriveLetterIsNoScheme", "C:draft.ai", "file://{wd}/C:draft.ai" },
        UriCase { "ExistingFileWinsOverScheme", "notes:draft.ai", "file://{wd}/notes:draft.ai" }),
    [](const auto& info) { return std::string(info.param.name); });

TEST(ApplicationInstance, EmptyArgumentsAreDroppedAndTheOrderKept)
{
    EXPECT_EQ(ApplicationInstance::urisFromArguments(
                  { "b.ai", "", "tolvane://settings", "a.ai" }, QStringLiteral("/w")),
        QStringList({ "file:///w/b.ai", "tolvane://settings", "file:///w/a.ai" }));
}

TEST(ApplicationInstance, ParentFolderIsResolved)
{
    const QStringList uris
        = ApplicationInstance::urisFromArguments({ "../up.ai" }, QStringLiteral("/w/documents"));
    EXPECT_EQ(uris, QStringList { "file:///w/up.ai" });
}

TEST(ApplicationInstance, ALaterLaunchForwardsItsFilesAndURLs)
{
    ApplicationInstance primary(identifier);
    ASSERT_EQ(primary.claim({ "ignored.ai" }), ApplicationInstance::Role::Primary);
    Received received(primary);
    const QString folder = TestEnvironment::home() + QStringLiteral("/my documents");
    ASSERT_TRUE(QDir().mkpath(folder));

    const Launch second
        = launch({ "a b.ai", "tolvane://settings/about", "/art/Grüße.eps", "sub/c.indd" }, folder);

    EXPECT_EQ(second.role, "Forwarded") << second.errors.toStdString();
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return !received.opened.isEmpty(); }, 10000));
    const QString base = QStringLiteral("file://") + TestEnvironment::home() + "/my%20documents";
    const QStringList expected { base + "/a%20b.ai", "tolvane://settings/about",
        "file:///art/Gr%C3%BC%C3%9Fe.eps", base + "/sub/c.indd" };
    EXPECT_EQ(received.opened, QList<QStringList> { expected });
    EXPECT_EQ(received.activations, 0);
}

TEST(ApplicationInstance, ALaterLaunchWithoutArgumentsActivates)
{
    ApplicationInstance primary(identifier);
    ASSERT_EQ(primary.claim({}), ApplicationInstance::Role::Primary);
    Received received(primary);

    const Launch second = launch({});

    EXPECT_EQ(second.role, "Forwarded") << second.errors.toStdString();
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return received.activations > 0; }, 10000));
    EXPECT_EQ(received.activations, 1);
    EXPECT_TRUE(received.opened.isEmpty());
}

TEST(ApplicationInstance, ClaimingTwiceStaysPrimary)
{
    ApplicationInstance primary(identifier);
    ASSERT_EQ(primary.claim({}), ApplicationInstance::Role::Primary);
    EXPECT_EQ(primary.claim({ "a.ai" }), ApplicationInstance::Role::Primary);
}

TEST(ApplicationInstance, TheNameIsFreeAgainWhenThePrimaryEnds)
{
    auto primary = std::make_unique<ApplicationInstance>(identifier);
    ASSERT_EQ(primary->claim({}), ApplicationInstance::Role::Primary);
    primary.reset();

    const Launch next = launch({ "a.ai" });
    EXPECT_EQ(next.role, "Primary") << next.errors.toStdString();
    // And once that process has ended too, this one can take the name again.
    ApplicationInstance again(identifier);
    EXPECT_EQ(again.claim({}), ApplicationInstance::Role::Primary);
}

TEST(ApplicationInstance, AnOwnerThatDoesNotServeTheInterfaceLeavesTheLaunchAlone)
{
    const QString connectionName = QStringLiteral("squatter");
    {
        QDBusConnection squatter
            = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName);
        ASSERT_TRUE(squatter.registerService(identifier));

        const Launch second = launch({ "a.ai" });
        EXPECT_EQ(second.role, "Alone");
        EXPECT_TRUE(second.errors.contains("WARNING -- ")) << second.errors.toStdString();
    }
    QDBusConnection::disconnectFromBus(connectionName);
}

struct NoBusCase {
    const char* name;
    const char* address; // nullptr: not set at all
};

void PrintTo(const NoBusCase& noBusCase, std::ostream* out) { *out << noBusCase.name; }

class WithoutASessionBus : public testing::TestWithParam<NoBusCase> { };

TEST_P(WithoutASessionBus, TheLaunchHandlesItsArgumentsItself)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    environment.remove(QStringLiteral("DISPLAY"));
    if (GetParam().address)
        environment.insert(
            QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QString::fromUtf8(GetParam().address));

    const Launch alone = launch({ "a.ai" }, QDir::homePath(), environment);
    EXPECT_EQ(alone.role, "Alone") << alone.errors.toStdString();
}

INSTANTIATE_TEST_SUITE_P(ApplicationInstance, WithoutASessionBus,
    testing::Values(NoBusCase { "AddressUnset", nullptr },
        NoBusCase { "NobodyListening", "unix:path=/nonexistent/tolvane-test-bus" }),
    [](const auto& info) { return std::string(info.param.name); });

}
