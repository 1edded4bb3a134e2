// SPDX-License-Identifier: GPL-3.0-or-later
#include "UserDefaults.h"

#include "PropertyList.h"
#include "TestEnvironment.h"

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

struct TypedCase {
    const char* name;
    QVariant stored;
    bool asBool;
    qint64 asInteger;
    double asDouble;
    QString asString;
};

void PrintTo(const TypedCase& value, std::ostream* out) { *out << value.name; }

class UserDefaultsTypedGetters : public testing::TestWithParam<TypedCase> { };

TEST_P(UserDefaultsTypedGetters, ConvertLikeThePlatform)
{
    UserDefaults defaults(domain);
    defaults.setObject(GetParam().stored, "key");
    EXPECT_EQ(defaults.boolForKey("key"), GetParam().asBool);
    EXPECT_EQ(defaults.integerForKey("key"), GetParam().asInteger);
    EXPECT_DOUBLE_EQ(defaults.doubleForKey("key"), GetParam().asDouble);
    EXPECT_EQ(defaults.stringForKey("key"), GetParam().asString);
}

INSTANTIATE_TEST_SUITE_P(Values, UserDefaultsTypedGetters,
    testing::Values(TypedCase { "boolTrue", true, true, 1, 1.0, "1" },
        TypedCase { "integer", qint64(7), true, 7, 7.0, "7" },
        TypedCase { "zero", qint64(0), false, 0, 0.0, "0" },
        TypedCase { "real", 2.75, true, 2, 2.75, "2.75" },
        TypedCase { "textYES", QString("YES"), true, 0, 0.0, "YES" },
        TypedCase { "textNO", QString("NO"), false, 0, 0.0, "NO" },
        TypedCase { "textSignedZeros", QString("  +0003"), true, 3, 3.0, "  +0003" },
        TypedCase { "textTrue", QString("true"), true, 0, 0.0, "true" },
        TypedCase { "textZeros", QString("000"), false, 0, 0.0, "000" },
        TypedCase { "textNumber", QString(" -12.5kg"), true, -12, -12.5, " -12.5kg" },
        TypedCase { "data", QByteArray("1"), false, 0, 0.0, QString() }),
    [](const auto& info) { return std::string(info.param.name); });

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

TEST(UserDefaults, ChangesReachTheFileOnTheirOwnWithinAMoment)
{
    UserDefaults defaults(domain);
    defaults.setFloat(1.5f, "threshold");
    defaults.setBool(false, "flag");
    TestEnvironment::waitUntil([] { return !fileContents().isEmpty(); }, 5000);
    const QVariantMap written = fileContents();
    EXPECT_EQ(written.value("threshold"), QVariant(1.5));
    EXPECT_EQ(written.value("flag"), QVariant(false));
    EXPECT_EQ(written.value("flag").typeId(), QMetaType::Bool);
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
    EXPECT_EQ(fileContents(),
        (QVariantMap { { "mine", qint64(2) }, { "theirs", qint64(3) }, { "new", qint64(4) } }));
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
    EXPECT_EQ(fileContents(),
        (QVariantMap { { "a", qint64(1) }, { "b", QString("text") }, { "c", qint64(2) } }));

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
