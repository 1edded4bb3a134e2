// SPDX-License-Identifier: GPL-3.0-or-later
#include "PropertyList.h"

#include "TestEnvironment.h"
#include "VariantKinds.h"

#include <QDateTime>
#include <QDir>
#include <QPoint>
#include <gtest/gtest.h>

namespace {

QVariantMap everyKind()
{
    QVariantMap nested;
    nested.insert("inner", QVariantList { qint64(1), QStringLiteral("two"), 3.5 });
    QVariantMap map;
    map.insert("bool", true);
    map.insert("false", false);
    map.insert("integer", qint64(42));
    map.insert("negative", qint64(-7));
    map.insert("big", qint64(1) << 40);
    map.insert("double", 0.1);
    map.insert("string", QStringLiteral("Grüße & <tags>"));
    map.insert("empty string", QString(""));
    map.insert("date", QDateTime(QDate(2024, 2, 29), QTime(13, 14, 15), Qt::UTC));
    map.insert("data", QByteArray("\x00\x01\xff", 3));
    map.insert("array", QVariantList { true, qint64(2) });
    map.insert("dictionary", nested);
    return map;
}

TEST(PropertyList, XmlRoundTripKeepsEveryKind)
{
    const QVariantMap original = everyKind();
    const auto xml = PropertyList::toXml(original);
    ASSERT_TRUE(xml);
    const auto back = PropertyList::fromData(*xml);
    ASSERT_TRUE(back);
    const QVariantMap map = back->toMap();
    ASSERT_EQ(map.keys(), original.keys());
    for (const QString& key : original.keys())
        EXPECT_TRUE(VariantKinds::same(map.value(key), original.value(key))) << key.toStdString();
}

TEST(PropertyList, FloatAndIntegerKindsAreWrittenAsRealAndInteger)
{
    QVariantMap map;
    map.insert("float", 128.0f);
    map.insert("int", 5);
    const QByteArray xml = PropertyList::toXml(map).value();
    EXPECT_TRUE(xml.contains("<real>128")) << xml.toStdString();
    EXPECT_TRUE(xml.contains("<integer>5</integer>")) << xml.toStdString();
    const QVariantMap back = PropertyList::fromData(xml)->toMap();
    EXPECT_EQ(back.value("float").typeId(), QMetaType::Double);
    EXPECT_EQ(back.value("float").toDouble(), 128.0);
    EXPECT_EQ(back.value("int").typeId(), QMetaType::LongLong);
}

TEST(PropertyList, ValuesWithoutAPropertyListKindAreRefused)
{
    QVariantMap map;
    map.insert("point", QVariant::fromValue(QPoint(1, 2)));
    EXPECT_FALSE(PropertyList::toXml(map));
    QString error;
    EXPECT_FALSE(
        PropertyList::writeXmlAtomically(map, TestEnvironment::home() + "/x.plist", &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(QFile::exists(TestEnvironment::home() + "/x.plist"));
}

struct BadFile {
    const char* name;
    QByteArray contents;
};

void PrintTo(const BadFile& value, std::ostream* out) { *out << value.name; }

class PropertyListBadFiles : public testing::TestWithParam<BadFile> { };

TEST_P(PropertyListBadFiles, GiveNoDictionary)
{
    const QString path = TestEnvironment::home() + "/bad.plist";
    TestEnvironment::writeFile(path, GetParam().contents);
    EXPECT_FALSE(PropertyList::readDictionary(path));
}

INSTANTIATE_TEST_SUITE_P(Files, PropertyListBadFiles,
    testing::Values(BadFile { "empty", "" },
        BadFile { "array",
            "<?xml version=\"1.0\"?><plist version=\"1.0\"><array><string>a</string>"
            "</array></plist>" },
        BadFile { "truncated", "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>a</key>" },
        BadFile { "garbage", "\x89PNG\r\n\x1a\n garbage" },
        BadFile { "truncatedBinary", QByteArray("bplist00\xd1\x01\x02", 10) }),
    [](const auto& info) { return std::string(info.param.name); });

TEST(PropertyList, MissingAndUnreadableFilesGiveNoDictionary)
{
    EXPECT_FALSE(PropertyList::readDictionary(TestEnvironment::home() + "/missing.plist"));
    EXPECT_FALSE(PropertyList::readDictionary(TestEnvironment::home()));
}

TEST(PropertyList, DeepNestingIsRefusedNotOverflowed)
{
    QByteArray xml = "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>a</key>";
    for (int i = 0; i < 5000; ++i)
        xml += "<array>";
    for (int i = 0; i < 5000; ++i)
        xml += "</array>";
    xml += "</dict></plist>";
    const QString path = TestEnvironment::home() + "/deep.plist";
    TestEnvironment::writeFile(path, xml);
    EXPECT_FALSE(PropertyList::readDictionary(path));
}

TEST(PropertyList, AtomicWriteCreatesFoldersAndReplacesTheFile)
{
    const QString path = TestEnvironment::home() + "/a/b/c.plist";
    QVariantMap first { { "k", qint64(1) } };
    ASSERT_TRUE(PropertyList::writeXmlAtomically(first, path));
    QVariantMap second { { "k", qint64(2) } };
    ASSERT_TRUE(PropertyList::writeXmlAtomically(second, path));
    EXPECT_EQ(PropertyList::readDictionary(path)->value("k"), QVariant(qint64(2)));
    // No temporary files are left behind.
    EXPECT_EQ(QDir(TestEnvironment::home() + "/a/b").entryList(QDir::Files).size(), 1);
}

}
