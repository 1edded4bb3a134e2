// SPDX-License-Identifier: GPL-3.0-or-later
// Sample files: tests/data/formats/ase, each with the parse another library expects beside it
// (MIT; see tests/data/README.md).
#include "SwatchExchange.h"

#include "TestEnvironment.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

using namespace Formats;

namespace {

// The shape of the expected-parse files: the model as its four bytes without the padding, the
// type by its name.
QJsonArray toJson(const std::vector<AseSwatch>& swatches, const std::vector<AseGroup>& groups)
{
    static const char* const types[] = { "Global", "Spot", "Process" };
    QJsonArray items;
    for (const AseSwatch& swatch : swatches) {
        QJsonArray values;
        for (float value : swatch.values)
            values.append(double(value));
        const auto type = static_cast<std::size_t>(swatch.type);
        items.append(QJsonObject { { "name", swatch.name },
            { "type", type < std::size(types) ? types[type] : "?" },
            { "data",
                QJsonObject { { "mode", QString::fromLatin1(swatch.modelCode.trimmed()) },
                    { "values", values } } } });
    }
    for (const AseGroup& group : groups)
        items.append(QJsonObject { { "name", group.name }, { "type", "Color Group" },
            { "swatches", toJson(group.swatches, group.groups) } });
    return items;
}

}

TEST(SwatchExchange, ReadsEachSampleAsAnotherLibraryDoes)
{
    for (const char* name : { "sampler", "solarized", "empty-white-folder",
             "single-white-swatch-in-folder", "white-swatch-no-folder" }) {
        const QString base = TestEnvironment::dataPath(QStringLiteral("formats/ase/")) + name;
        const auto result = parseSwatchExchange(TestEnvironment::readFile(base + ".ase"));
        ASSERT_TRUE(result.ok()) << name << ": " << result.reason().toStdString();
        const QJsonArray expected
            = QJsonDocument::fromJson(TestEnvironment::readFile(base + ".json")).array();
        ASSERT_FALSE(expected.isEmpty()) << name;
        EXPECT_EQ(toJson(result.value().swatches, result.value().groups), expected) << name;
    }
}
