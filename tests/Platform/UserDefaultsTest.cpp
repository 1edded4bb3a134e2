// SPDX-License-Identifier: GPL-3.0-or-later
#include "UserDefaults.h"

#include "PropertyList.h"
#include "TestEnvironment.h"
#include "VariantKinds.h"

#include <QDir>
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

TEST(UserDefaults, PersistentValuesWinOverRegisteredOnesWhichAreNeverWritten)
{
    UserDefaults defaults(domain);
    QStringList signalled;
    QObject::connect(
        &defaults, &UserDefaults::changed, [&](const QString& key) { signalled << key; });
    defaults.registerDefaults({ { "a", qint64(1) }, { "b", qint64(2) } });
    defaults.setInteger(10, "a");
    EXPECT_EQ(defaults.integerForKey("a"), 10);
    defaults.registerDefaults({ { "b", qint64(3) } });
    EXPECT_EQ(defaults.integerForKey("b"), 3);
    defaults.removeObjectForKey("a");
    defaults.removeObjectForKey("a");
    EXPECT_EQ(defaults.dictionaryRepresentation().value("a"), QVariant(qint64(1)));
    // Every assignment is signalled, also one that changes nothing.
    EXPECT_EQ(signalled, (QStringList { "a", "a", "a" }));
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_TRUE(fileContents().isEmpty());
}

TEST(UserDefaults, ChangesReachTheFileOnTheirOwnWithTheirKinds)
{
    UserDefaults defaults(domain);
    defaults.setFloat(1.5f, "threshold");
    defaults.setBool(false, "flag");
    ASSERT_TRUE(TestEnvironment::waitUntil([] { return !fileContents().isEmpty(); }, 30000));
    EXPECT_TRUE(VariantKinds::same(
        fileContents(), QVariantMap { { "flag", false }, { "threshold", 1.5 } }));
    // Pending changes are written when the object goes.
    {
        UserDefaults other(domain);
        other.setObject(QString("kept"), "text");
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
    const QVariantMap merged { { "mine", qint64(2) }, { "theirs", qint64(3) },
        { "new", qint64(4) } };
    EXPECT_TRUE(VariantKinds::same(defaults.dictionaryRepresentation(), merged));
    EXPECT_TRUE(VariantKinds::same(fileContents(), merged));
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

}
