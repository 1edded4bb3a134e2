// SPDX-License-Identifier: GPL-3.0-or-later
#include "UserDefaults.h"

#include "PropertyList.h"
#include "TestEnvironment.h"
#include "VariantKinds.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QThread>
#include <gtest/gtest.h>

namespace {

const QString domain = QStringLiteral("app.tolvane.Test");

QVariantMap fileContents()
{
    return PropertyList::readDictionary(UserDefaults::pathForDomain(domain))
        .value_or(QVariantMap());
}

void writeFileContents(const QVariantMap& map)
{
    ASSERT_TRUE(PropertyList::writeXmlAtomically(map, UserDefaults::pathForDomain(domain)));
}

TEST(UserDefaults, FileLiesInTheUserLibraryPreferences)
{
    EXPECT_EQ(UserDefaults(domain).path(),
        TestEnvironment::userLibrary() + "/Preferences/app.tolvane.Test.plist");
}

TEST(UserDefaults, TypedGettersConvertLikeThePlatform)
{
    struct Case {
        QVariant stored;
        bool asBool;
        qint64 asInteger;
        double asDouble;
        QString asString;
    };
    UserDefaults defaults(domain);
    for (const Case& c : { Case { true, true, 1, 1.0, "1" }, Case { 2.75, true, 2, 2.75, "2.75" },
             Case { QString("YES"), true, 0, 0.0, "YES" },
             Case { QString("true"), true, 0, 0.0, "true" },
             Case { QString("  +0003"), true, 3, 3.0, "  +0003" },
             Case { QString("000"), false, 0, 0.0, "000" },
             Case { QString(" -12.5kg"), true, -12, -12.5, " -12.5kg" },
             Case { QByteArray("1"), false, 0, 0.0, QString() } }) {
        SCOPED_TRACE(c.stored.toString().toStdString());
        defaults.setObject(c.stored, "key");
        EXPECT_EQ(defaults.boolForKey("key"), c.asBool);
        EXPECT_EQ(defaults.integerForKey("key"), c.asInteger);
        EXPECT_DOUBLE_EQ(defaults.doubleForKey("key"), c.asDouble);
        EXPECT_EQ(defaults.stringForKey("key"), c.asString);
    }
}

TEST(UserDefaults, PersistentValuesWinOverRegisteredOnes)
{
    UserDefaults defaults(domain);
    defaults.registerDefaults({ { "a", qint64(1) }, { "b", qint64(2) } });
    defaults.setInteger(10, "a");
    EXPECT_EQ(defaults.integerForKey("a"), 10);
    EXPECT_EQ(defaults.integerForKey("b"), 2);
    defaults.registerDefaults({ { "b", qint64(3) } });
    EXPECT_EQ(defaults.integerForKey("b"), 3);
    defaults.removeObjectForKey("a");
    EXPECT_EQ(defaults.integerForKey("a"), 1);
    EXPECT_EQ(defaults.dictionaryRepresentation().value("a"), QVariant(qint64(1)));
    // Registered values are never written.
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_FALSE(fileContents().contains("b"));
}

TEST(UserDefaults, EveryAssignmentIsSignalledAlsoWithoutChange)
{
    UserDefaults defaults(domain);
    QStringList keys;
    QObject::connect(&defaults, &UserDefaults::changed, [&](const QString& key) { keys << key; });
    defaults.setBool(true, "x");
    defaults.setBool(true, "x");
    defaults.removeObjectForKey("y");
    EXPECT_EQ(keys, (QStringList { "x", "x", "y" }));
}

TEST(UserDefaults, ChangesReachTheFileOnTheirOwnWithTheirKinds)
{
    UserDefaults defaults(domain);
    defaults.setFloat(1.5f, "threshold");
    defaults.setBool(false, "flag");
    ASSERT_TRUE(TestEnvironment::waitUntil([] { return !fileContents().isEmpty(); }, 30000));
    const QVariantMap written = fileContents();
    EXPECT_EQ(written.value("threshold").typeId(), QMetaType::Double);
    EXPECT_EQ(written.value("threshold").toDouble(), 1.5);
    EXPECT_EQ(written.value("flag").typeId(), QMetaType::Bool);
    EXPECT_FALSE(written.value("flag").toBool());
}

TEST(UserDefaults, PendingChangesAreWrittenWhenTheObjectGoes)
{
    {
        UserDefaults defaults(domain);
        defaults.setObject(QString("kept"), "text");
    }
    EXPECT_EQ(fileContents().value("text"), QVariant(QString("kept")));
}

TEST(UserDefaults, SynchronizeTakesInOtherWritersButKeepsOwnChanges)
{
    writeFileContents({ { "mine", qint64(1) }, { "theirs", qint64(1) }, { "gone", qint64(1) } });
    UserDefaults defaults(domain);
    EXPECT_EQ(defaults.integerForKey("theirs"), 1);
    defaults.setInteger(2, "mine");
    // Another process changes and removes keys meanwhile.
    writeFileContents({ { "mine", qint64(9) }, { "theirs", qint64(3) }, { "new", qint64(4) } });
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_EQ(defaults.integerForKey("mine"), 2);
    EXPECT_EQ(defaults.integerForKey("theirs"), 3);
    EXPECT_EQ(defaults.integerForKey("new"), 4);
    EXPECT_FALSE(defaults.objectForKey("gone").isValid());
    EXPECT_TRUE(VariantKinds::same(fileContents(),
        QVariantMap { { "mine", qint64(2) }, { "theirs", qint64(3) }, { "new", qint64(4) } }));
}

TEST(UserDefaults, ADamagedFileIsMovedAsideAndTheValuesAlreadyReadAreKept)
{
    writeFileContents({ { "a", qint64(1) }, { "b", QString("text") } });
    UserDefaults defaults(domain);
    TestEnvironment::writeFile(defaults.path(), "<plist><dict><key>a</key");
    defaults.setInteger(2, "c");
    testing::internal::CaptureStderr();
    ASSERT_TRUE(defaults.synchronize());
    const QString log = QString::fromStdString(testing::internal::GetCapturedStderr());
    EXPECT_TRUE(VariantKinds::same(fileContents(),
        QVariantMap { { "a", qint64(1) }, { "b", QString("text") }, { "c", qint64(2) } }));

    const QDir folder = QFileInfo(defaults.path()).dir();
    const QStringList aside = folder.entryList({ "app.tolvane.Test.plist.unreadable-*" });
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(
        TestEnvironment::readFile(folder.filePath(aside.first())), "<plist><dict><key>a</key");
    EXPECT_EQ(log.count('\n'), 1) << log.toStdString();
    EXPECT_TRUE(log.startsWith("WARNING -- ") && log.contains(aside.first())) << log.toStdString();
}

TEST(UserDefaults, AnUnwritableFolderFailsAndKeepsTheChangesPending)
{
    UserDefaults defaults(domain);
    // A file where the Preferences folder should be.
    TestEnvironment::writeFile(TestEnvironment::userLibrary() + "/Preferences", "not a folder");
    defaults.setInteger(5, "k");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(defaults.integerForKey("k"), 5);
    QFile::remove(TestEnvironment::userLibrary() + "/Preferences");
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(fileContents().value("k"), QVariant(qint64(5)));
}

// A writer killed at any moment leaves the old file or the new one, never a broken one.
TEST(UserDefaults, KilledWritersNeverLeaveABrokenFile)
{
    const QString writer = QCoreApplication::applicationDirPath() + "/defaults_writer";
    const QString path = UserDefaults::pathForDomain(domain);
    int killedWhileRunning = 0;
    for (int round = 0; round < 300; ++round) {
        QProcess process;
        process.start(writer, { domain, QString::number(round) });
        ASSERT_TRUE(process.waitForStarted());
        QThread::usleep(QRandomGenerator::global()->bounded(1000, 40000));
        if (process.state() == QProcess::Running)
            ++killedWhileRunning;
        process.kill();
        process.waitForFinished();
        if (QFile::exists(path)) {
            ASSERT_TRUE(PropertyList::readDictionary(path)) << "round " << round;
        }
    }
    // The rounds must really have interrupted writers.
    EXPECT_GT(killedWhileRunning, 200);
    // On a loaded machine every round may have ended before its first write: one more writer
    // runs until it has written, and is killed writing again.
    QProcess last;
    last.start(writer, { domain, QStringLiteral("last") });
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return QFile::exists(path); }, 60000));
    last.kill();
    last.waitForFinished();
    EXPECT_TRUE(PropertyList::readDictionary(path));
}

}
