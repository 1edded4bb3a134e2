// SPDX-License-Identifier: GPL-3.0-or-later
// Files written here are read by Python's plistlib, an independent implementation, and the other
// way round.
#include "TestEnvironment.h"
#include "UserDefaults.h"
#include "VistrelUtilities.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <gtest/gtest.h>

namespace {

QByteArray runPython(const QString& script, const QStringList& arguments)
{
    QProcess python;
    python.start("python3", QStringList { "-c", script } + arguments);
    EXPECT_TRUE(python.waitForFinished(30000));
    EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
    return python.readAllStandardOutput();
}

// Prints {key: "kind:value"} for every entry of a property-list file.
const char* describeFile = R"(
import json, plistlib, sys
def describe(v):
    if isinstance(v, bool): return "bool:" + str(v)
    if isinstance(v, int): return "int:" + str(v)
    if isinstance(v, float): return "real:" + repr(v)
    if isinstance(v, str): return "string:" + v
    if isinstance(v, bytes): return "data:" + v.hex()
    if isinstance(v, list): return "array:" + ",".join(describe(x) for x in v)
    if isinstance(v, dict): return "dict:" + ",".join(k + "=" + describe(v[k]) for k in sorted(v))
    return "date:" + v.strftime("%Y-%m-%dT%H:%M:%S")
with open(sys.argv[1], "rb") as f:
    print(json.dumps({k: describe(v) for k, v in plistlib.load(f).items()}))
)";

TEST(PlistlibInterop, UserDefaultsFilesKeepEveryKeyAndKind)
{
    {
        UserDefaults defaults(VTPreferencesDomain);
        const QVariantMap settings = VTDefaults();
        for (auto it = settings.begin(); it != settings.end(); ++it)
            defaults.setObject(it.value(), it.key());
        defaults.setObject(QDateTime(QDate(2025, 11, 3), QTime(9, 41, 7), Qt::UTC), "Date");
        defaults.setObject(QByteArray("\x00\x7f\xff", 3), "Data");
        defaults.setObject(QVariantList { qint64(-3), QString("ü") }, "Array");
        defaults.setObject(QVariantMap { { "nested", false } }, "Dictionary");
        ASSERT_TRUE(defaults.synchronize());
    }
    const QJsonObject read
        = QJsonDocument::fromJson(runPython(describeFile, { VTPreferencesPath() })).object();
    const QJsonObject expected {
        { "Warn About Double Clicks In Preview", "bool:True" },
        { "UseLoupe", "bool:True" },
        { "Show Fonts In Preview", "bool:True" },
        { "Show Image Links In Preview", "bool:True" },
        { "Show Color Swatches In Preview", "bool:True" },
        { "Update Frequency", "int:1" },
        { "Last Update Check", "real:0.0" },
        { "Show WYSIWYG Fonts In Preview", "bool:True" },
        { "Illustrator Color Swatch Mode In Preview", "int:1" },
        { "Image Background Color Name", "string:White" },
        { "Image Background Color Tag", "int:1" },
        { "Prefer Embedded Preview For Thumbnail File Size Threshold", "real:128.0" },
        { "Prefer Embedded Preview For Preview File Size Threshold", "real:256.0" },
        { "Maximum Number Of Pages Previewed", "int:20" },
        { "Preview Mode", "int:0" },
        { "InDesign Spread Mode", "int:1" },
        { "Illustrator Spread Mode", "int:0" },
        { "Date", "date:2025-11-03T09:41:07" },
        { "Data", "data:007fff" },
        { "Array", "array:int:-3,string:ü" },
        { "Dictionary", "dict:nested=bool:False" },
    };
    EXPECT_EQ(read, expected);
}

const char* writeFile = R"(
import datetime, os, plistlib, sys
os.makedirs(os.path.dirname(sys.argv[1]), exist_ok=True)
value = {
    "Preview Mode": 3, "UseLoupe": False, "Last Update Check": 1700000000.5,
    "Image Background Color Name": "Black", "Extra": b"\x01\x02",
    "When": datetime.datetime(2020, 1, 2, 3, 4, 5), "List": [1, "two", 3.0],
}
with open(sys.argv[1], "wb") as f:
    plistlib.dump(value, f, fmt=plistlib.FMT_BINARY if sys.argv[2] == "binary" else plistlib.FMT_XML)
)";

class PlistlibFiles : public testing::TestWithParam<const char*> { };

TEST_P(PlistlibFiles, AreReadWithTheirKinds)
{
    runPython(writeFile, { VTPreferencesPath(), GetParam() });
    const QVariantMap settings = VTUserDefaults();
    EXPECT_EQ(settings.value("Preview Mode"), QVariant(qint64(3)));
    EXPECT_EQ(settings.value("Preview Mode").typeId(), QMetaType::LongLong);
    EXPECT_EQ(settings.value("UseLoupe"), QVariant(false));
    EXPECT_EQ(settings.value("UseLoupe").typeId(), QMetaType::Bool);
    EXPECT_EQ(settings.value("Last Update Check"), QVariant(1700000000.5));
    EXPECT_EQ(settings.value("Image Background Color Name"), QVariant("Black"));
    EXPECT_EQ(settings.value("Extra"), QVariant(QByteArray("\x01\x02")));
    EXPECT_EQ(
        settings.value("When"), QVariant(QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5), Qt::UTC)));
    EXPECT_EQ(settings.value("List"), QVariant(QVariantList { qint64(1), "two", 3.0 }));
    // Completed with the defaults it lacks.
    EXPECT_EQ(settings.value("Maximum Number Of Pages Previewed"), QVariant(qint64(20)));
    EXPECT_EQ(settings.size(), 17 + 3);
}

INSTANTIATE_TEST_SUITE_P(Formats, PlistlibFiles, testing::Values("binary", "xml"));

}
