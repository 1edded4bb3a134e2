// SPDX-License-Identifier: GPL-3.0-or-later
// Samples: tests/data/formats/ase (origins in tests/data/README.md).
#include "AseFileBuilder.h"
#include "KindsTestData.h"
#include "PreviewerTable.h"

#include <QHash>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

using namespace Preview;
using namespace KindsTestData;

namespace {

constexpr std::uint16_t Global = 0, Spot = 1, Normal = 2;

// Loose swatch, a group with a nested group, and an empty group; a name with a control
// character, which XML cannot hold.
const QByteArray Nested = AseFileBuilder()
                              .color(QStringLiteral("Loose"), "RGB ", { 1, 0.5f, 0 }, Normal)
                              .groupStart(QStringLiteral("Brand"))
                              .color(QStringLiteral("In\x01k"), "CMYK", { 0, 1, 1, 0 }, Spot)
                              .groupStart(QStringLiteral("Accents"))
                              .color(QStringLiteral("Sky"), "LAB ", { 0.5f, 0, 0 }, Global)
                              .groupEnd()
                              .groupEnd()
                              .groupStart(QStringLiteral("Empty & <odd>"))
                              .groupEnd()
                              .bytes();

// The texts of the SVG with the x of their first place, and the fills of its rectangles.
QHash<QString, double> textsOf(const QByteArray& svg, QStringList& fills)
{
    QHash<QString, double> texts;
    QXmlStreamReader reader(svg);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == u"rect")
            fills.append(reader.attributes().value(QLatin1String("fill")).toString());
        if (reader.name() == u"text") {
            const double x = reader.attributes().value(QLatin1String("x")).toDouble();
            const QString text = reader.readElementText();
            if (!texts.contains(text))
                texts.insert(text, x);
        }
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return texts;
}

}

// The sheet is the preview's page, the groups its panel.
TEST(AseSheet, groupsNestedAndEmpty)
{
    auto preview = previewerForKind(Formats::FileKind::SwatchExchange)
                       ->preview(fileWith(QStringLiteral("nested.ase"), Nested), {});
    ASSERT_TRUE(preview.ok()) << preview.reason().toStdString();
    EXPECT_EQ(preview->kindName, QStringLiteral("Swatch Exchange file"));
    ASSERT_EQ(preview->pages.size(), 1u);
    const std::vector<PreviewSwatchGroup>& groups = preview->swatchGroups;
    QStringList groupNames;
    for (const PreviewSwatchGroup& group : groups)
        groupNames.append(group.name + u':' + QString::number(group.swatches.size()));
    ASSERT_EQ(groupNames, QStringList({ ":1", "Brand:1", "Brand / Accents:1", "Empty & <odd>:0" }));
    EXPECT_TRUE(groups[1].swatches[0].spot);
    EXPECT_TRUE(groups[2].swatches[0].global);

    QStringList fills;
    const QHash<QString, double> texts = textsOf(preview->pages[0].encoded, fills);
    for (const char* text : { "nested.ase", "Not in a group", "Loose", "Brand", "Ink", "Accents",
             "Sky", "Empty & <odd>", "No swatches", "RGB", "CMYK · Spot", "LAB · Global",
             "R 255 G 128 B 0 · #FF8000" })
        EXPECT_TRUE(texts.contains(QString::fromUtf8(text))) << text;
    // The nested group stands indented under its parent.
    EXPECT_GT(texts.value(QStringLiteral("Accents")), texts.value(QStringLiteral("Brand")));
    EXPECT_TRUE(fills.contains(QStringLiteral("#ff8000")));
    EXPECT_TRUE(fills.contains(QStringLiteral("#ff0000")));
}

TEST(AseThumbnail, chipsInFileOrder)
{
    const QString path = fileWith(QStringLiteral("four.ase"),
        AseFileBuilder()
            .color(QStringLiteral("R"), "RGB ", { 1, 0, 0 }, Normal)
            .groupStart(QStringLiteral("G"))
            .color(QStringLiteral("G"), "RGB ", { 0, 1, 0 }, Normal)
            .color(QStringLiteral("B"), "RGB ", { 0, 0, 1 }, Normal)
            .groupEnd()
            .color(QStringLiteral("K"), "CMYK", { 0, 0, 0, 1 }, Normal)
            .bytes());
    const auto thumbnail
        = previewerForKind(Formats::FileKind::SwatchExchange)->thumbnail(path, 100, {});
    ASSERT_TRUE(thumbnail.ok()) << thumbnail.reason().toStdString();
    EXPECT_EQ(thumbnail->size(), QSize(100, 100));
    // Loose swatches first, then the groups': red, black, then green and blue.
    EXPECT_EQ(QColor(thumbnail->pixel(25, 25)), QColor(Qt::red));
    EXPECT_EQ(QColor(thumbnail->pixel(75, 25)), QColor(Qt::black));
    EXPECT_EQ(QColor(thumbnail->pixel(25, 75)), QColor(Qt::green));
    EXPECT_EQ(QColor(thumbnail->pixel(75, 75)), QColor(Qt::blue));
}
