// SPDX-License-Identifier: GPL-3.0-or-later
#include "PropertyList.h"

#include "TestEnvironment.h"
#include "VariantKinds.h"

#include <QDateTime>
#include <QDir>
#include <QPoint>
#include <gtest/gtest.h>

namespace {

TEST(PropertyList, XmlRoundTripKeepsEveryKind)
{
    const QVariantMap original { { "bool", true }, { "integer", qint64(-7) },
        { "big", qint64(1) << 40 }, { "double", 0.1 }, { "string", "Grüße & <tags>" },
        { "empty string", QString("") },
        { "date", QDateTime(QDate(2024, 2, 29), QTime(13, 14, 15), Qt::UTC) },
        { "data", QByteArray("\x00\x01\xff", 3) },
        { "dictionary",
            QVariantMap { { "inner", QVariantList { qint64(1), QString("two"), 3.5 } } } } };
    const auto back = PropertyList::fromData(PropertyList::toXml(original).value());
    ASSERT_TRUE(back);
    EXPECT_TRUE(VariantKinds::same(back->toMap(), original));
    // A float and an int are written as a real and an integer, and read as double and qint64.
    const auto widened = PropertyList::fromData(
        PropertyList::toXml(QVariantMap { { "float", 128.0f }, { "int", 5 } }).value());
    EXPECT_TRUE(VariantKinds::same(
        widened->toMap(), QVariantMap { { "float", 128.0 }, { "int", qint64(5) } }));
}

TEST(PropertyList, BrokenMissingAndTooDeepFilesGiveNoDictionary)
{
    QByteArray deep = "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>a</key>";
    deep += QByteArray("<array>").repeated(5000) + QByteArray("</array>").repeated(5000);
    deep += "</dict></plist>";
    const QByteArray files[] = { "",
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><array><string>a</string></array></plist>",
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>a</key>",
        "\x89PNG\r\n\x1a\n garbage", QByteArray("bplist00\xd1\x01\x02", 10), deep };
    const QString path = TestEnvironment::home() + "/bad.plist";
    for (const QByteArray& contents : files) {
        TestEnvironment::writeFile(path, contents);
        EXPECT_FALSE(PropertyList::readDictionary(path)) << contents.left(80).toStdString();
    }
    EXPECT_FALSE(PropertyList::readDictionary(TestEnvironment::home() + "/missing.plist"));
    EXPECT_FALSE(PropertyList::readDictionary(TestEnvironment::home()));
}

// Written beside and renamed over: whoever has the old file open reads it whole, and no
// temporary file stays.
TEST(PropertyList, AtomicWriteCreatesFoldersAndReplacesTheFile)
{
    const QString path = TestEnvironment::home() + "/a/b/c.plist";
    ASSERT_TRUE(PropertyList::writeXmlAtomically(QVariantMap { { "k", qint64(1) } }, path));
    const QByteArray first = TestEnvironment::readFile(path);
    QFile reader(path);
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    ASSERT_TRUE(PropertyList::writeXmlAtomically(QVariantMap { { "k", qint64(2) } }, path));
    EXPECT_EQ(reader.readAll(), first);
    EXPECT_EQ(PropertyList::readDictionary(path)->value("k"), QVariant(qint64(2)));
    EXPECT_EQ(QDir(TestEnvironment::home() + "/a/b").entryList(QDir::Files).size(), 1);
}

}
