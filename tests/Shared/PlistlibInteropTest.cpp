// SPDX-License-Identifier: GPL-3.0-or-later
// Files written here are read by Python's plistlib, an independent implementation, and the other
// way round.
#include "TestEnvironment.h"
#include "UserDefaults.h"
#include "VariantKinds.h"
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

// One value of every kind the store writes, the generator's settings among them.
TEST(PlistlibInterop, UserDefaultsFilesKeepEveryKind)
{
    {
        UserDefaults defaults(VTPreferencesDomain);
        defaults.setObject(true, VTPUseLoupe);
        defaults.setObject(qint64(20), maximumNumberOfPagesPreviewed);
        defaults.setObject(128.0f, preferEmbeddedPreviewForThumbnailFileSizeThreshold);
        defaults.setObject(0.0, lastUpdateCheck);
        defaults.setObject(QString("White"), imageBackgroundColorName);
        defaults.setObject(QDateTime(QDate(2025, 11, 3), QTime(9, 41, 7), Qt::UTC), "Date");
        defaults.setObject(QByteArray("\x00\x7f\xff", 3), "Data");
        defaults.setObject(QVariantList { qint64(-3), QString("ü") }, "Array");
        defaults.setObject(QVariantMap { { "nested", false } }, "Dictionary");
        ASSERT_TRUE(defaults.synchronize());
    }
    const QJsonObject read
        = QJsonDocument::fromJson(runPython(describeFile, { VTPreferencesPath() })).object();
    const QJsonObject expected {
        { "UseLoupe", "bool:True" },
        { "Maximum Number Of Pages Previewed", "int:20" },
        { "Prefer Embedded Preview For Thumbnail File Size Threshold", "real:128.0" },
        { "Last Update Check", "real:0.0" },
        { "Image Background Color Name", "string:White" },
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
    QVariantMap expected = VTDefaults();
    expected.insert({ { "Preview Mode", qint64(3) }, { "UseLoupe", false },
        { "Last Update Check", 1700000000.5 }, { "Image Background Color Name", QString("Black") },
        { "Extra", QByteArray("\x01\x02") },
        { "When", QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5), Qt::UTC) },
        { "List", QVariantList { qint64(1), QString("two"), 3.0 } } });
    EXPECT_TRUE(VariantKinds::same(VTUserDefaults(), expected));
}

INSTANTIATE_TEST_SUITE_P(Formats, PlistlibFiles, testing::Values("binary", "xml"));

}
