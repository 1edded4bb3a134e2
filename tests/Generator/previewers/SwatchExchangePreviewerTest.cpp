// SPDX-License-Identifier: GPL-3.0-or-later
// Samples: tests/data/formats/ase (origins in tests/data/README.md).
#include "AseFileBuilder.h"
#include "KindsTestData.h"
#include "PreviewerTable.h"
#include "SwatchColor.h"
#include "SwatchSheet.h"

#include <QXmlStreamReader>
#include <gtest/gtest.h>

using namespace Preview;
using namespace KindsTestData;
using Formats::FormatError;

namespace {

constexpr std::uint16_t Global = 0, Spot = 1, Normal = 2;

Formats::AseDocument parsed(const QByteArray& bytes)
{
    auto document = Formats::parseSwatchExchange(bytes);
    EXPECT_TRUE(document.ok()) << document.reason().toStdString();
    return document.ok() ? std::move(document).value() : Formats::AseDocument();
}

Formats::AseSwatch aseSwatch(
    const char* model, std::initializer_list<float> values, std::uint16_t type = Normal)
{
    const Formats::AseDocument document
        = parsed(AseFileBuilder().color(QStringLiteral("S"), model, values, type).bytes());
    return document.swatches.empty() ? Formats::AseSwatch() : document.swatches.front();
}

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

struct SvgText {
    double x;
    QString text;
};

std::vector<SvgText> textsOf(const QByteArray& svg, QStringList* fills = nullptr)
{
    std::vector<SvgText> texts;
    QXmlStreamReader reader(svg);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == u"rect" && fills)
            fills->append(reader.attributes().value(QLatin1String("fill")).toString());
        if (reader.name() == u"text") {
            const double x = reader.attributes().value(QLatin1String("x")).toDouble();
            texts.push_back({ x, reader.readElementText() });
        }
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return texts;
}

const SvgText* findText(const std::vector<SvgText>& texts, const QString& text)
{
    for (const SvgText& candidate : texts) {
        if (candidate.text == text)
            return &candidate;
    }
    return nullptr;
}

}

TEST(AseColours, screenColoursOfKnownValues)
{
    struct Case {
        const char* name;
        Formats::AseSwatch swatch;
        QColor expected;
    };
    const Case cases[] = {
        { "cmykRed", aseSwatch("CMYK", { 0, 1, 1, 0 }), QColor(255, 0, 0) },
        { "cmykHalfBlack", aseSwatch("CMYK", { 0, 0, 0, 0.5f }), QColor(128, 128, 128) },
        { "rgbOrange", aseSwatch("RGB ", { 1, 0.5f, 0 }), QColor(255, 128, 0) },
        { "labMidGrey", aseSwatch("LAB ", { 0.5f, 0, 0 }), QColor(119, 119, 119) },
        // sRGB red as D50 Lab.
        { "labRed", aseSwatch("LAB ", { 0.5429f, 80.80f, 69.89f }), QColor(255, 0, 0) },
        // The file stores grey as its lightness: 0.25 is a dark grey.
        { "grayDark", aseSwatch("Gray", { 0.25f }), QColor(64, 64, 64) },
    };
    for (const Case& c : cases) {
        const QColor color = swatchDisplayColor(previewSwatch(c.swatch));
        ASSERT_TRUE(color.isValid()) << c.name;
        EXPECT_NEAR(color.red(), c.expected.red(), 2) << c.name;
        EXPECT_NEAR(color.green(), c.expected.green(), 2) << c.name;
        EXPECT_NEAR(color.blue(), c.expected.blue(), 2) << c.name;
    }
    EXPECT_FALSE(swatchDisplayColor(previewSwatch(aseSwatch("XYZ ", { 0.1f, 0.2f }))).isValid());
}

TEST(AseColours, descriptionsOfEveryModelAndType)
{
    struct Case {
        const char* name;
        Formats::AseSwatch swatch;
        QStringList expected;
    };
    const Case cases[] = {
        { "cmykGlobal", aseSwatch("CMYK", { 0.1f, 0.2f, 0.125f, 0 }, Global),
            { "CMYK · Global", "C 10% M 20% Y 12.5% K 0%" } },
        { "rgbSpot", aseSwatch("RGB ", { 1, 0.5f, 0 }, Spot),
            { "RGB · Spot", "R 255 G 128 B 0 · #FF8000" } },
        { "labNormal", aseSwatch("LAB ", { 0.5f, 20, -30.25f }, Normal),
            { "LAB", "L 50 a 20 b -30.3" } },
        { "gray", aseSwatch("Gray", { 0.6f }), { "Gray", "Gray 40%" } },
        { "unknownModel", aseSwatch("XYZ ", { 0.5f, 0.25f }), { "XYZ", "0.5 0.25" } },
    };
    for (const Case& c : cases)
        EXPECT_EQ(swatchDescription(previewSwatch(c.swatch)), c.expected) << c.name;
}

// The sheet is the preview's page, the groups its panel.
TEST(AseSheet, groupsNestedAndEmpty)
{
    auto preview = previewerForKind(Formats::FileKind::SwatchExchange)
                       ->preview(fileWith(QStringLiteral("nested.ase"), Nested), {});
    ASSERT_TRUE(preview.ok()) << preview.reason().toStdString();
    EXPECT_EQ(preview->kindName, QStringLiteral("Swatch Exchange file"));
    ASSERT_EQ(preview->pages.size(), 1u);
    EXPECT_EQ(preview->pages[0].encodedFormat, QStringLiteral("svg"));
    EXPECT_FALSE(preview->pages[0].sizePoints.isEmpty());
    const std::vector<PreviewSwatchGroup>& groups = preview->swatchGroups;
    QStringList groupNames;
    for (const PreviewSwatchGroup& group : groups)
        groupNames.append(group.name + u':' + QString::number(group.swatches.size()));
    ASSERT_EQ(groupNames, QStringList({ ":1", "Brand:1", "Brand / Accents:1", "Empty & <odd>:0" }));
    EXPECT_TRUE(groups[1].swatches[0].spot);
    EXPECT_TRUE(groups[2].swatches[0].global);

    QStringList fills;
    const std::vector<SvgText> texts = textsOf(preview->pages[0].encoded, &fills);
    for (const char* text : { "nested.ase", "Not in a group", "Loose", "Brand", "Ink", "Accents",
             "Sky", "Empty & <odd>", "No swatches", "RGB", "CMYK · Spot", "LAB · Global",
             "R 255 G 128 B 0 · #FF8000" })
        EXPECT_NE(findText(texts, QString::fromUtf8(text)), nullptr) << text;
    // The nested group stands indented under its parent.
    ASSERT_NE(findText(texts, QStringLiteral("Accents")), nullptr);
    EXPECT_GT(
        findText(texts, QStringLiteral("Accents"))->x, findText(texts, QStringLiteral("Brand"))->x);
    EXPECT_TRUE(fills.contains(QStringLiteral("#ff8000")));
    EXPECT_TRUE(fills.contains(QStringLiteral("#ff0000")));
}

TEST(AsePreview, cutAndForeignFilesFail)
{
    const QByteArray whole = sample(QStringLiteral("formats/ase/three-colors.ase"));
    struct Case {
        const char* name;
        QByteArray bytes;
        FormatError error;
    };
    const Case cases[] = {
        { "cutInASwatch", whole.left(whole.size() - 5), FormatError::DamagedFile },
        { "notSwatches", "GIF89a....", FormatError::NotThisKind },
    };
    for (const Case& c : cases) {
        const QString path = fileWith(QStringLiteral("case.ase"), c.bytes);
        const auto content = previewerForKind(Formats::FileKind::SwatchExchange)->preview(path, {});
        ASSERT_FALSE(content.ok()) << c.name;
        EXPECT_EQ(content.error(), c.error) << c.name;
        const auto thumbnail
            = previewerForKind(Formats::FileKind::SwatchExchange)->thumbnail(path, 64, {});
        ASSERT_FALSE(thumbnail.ok()) << c.name;
        EXPECT_EQ(thumbnail.error(), c.error) << c.name;
    }
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

    const auto none
        = previewerForKind(Formats::FileKind::SwatchExchange)
              ->thumbnail(fileWith(QStringLiteral("none.ase"),
                              AseFileBuilder().groupStart(QStringLiteral("E")).groupEnd().bytes()),
                  100, {});
    EXPECT_FALSE(none.ok());
}

TEST(AseSheet, aLongFileIsCutWithACount)
{
    AseFileBuilder builder;
    for (int i = 0; i < 7; ++i)
        builder.color(QStringLiteral("Loose %1").arg(i), "Gray", { 0.5f }, Normal);
    builder.groupStart(QStringLiteral("Late group"));
    builder.color(QStringLiteral("Late"), "Gray", { 0.5f }, Normal);
    builder.groupEnd();
    const Formats::AseDocument document = parsed(builder.bytes());

    const std::vector<SvgText> texts
        = textsOf(drawSwatchSheet(document, QStringLiteral("t"), 5).svg);
    EXPECT_NE(findText(texts, QStringLiteral("Loose 4")), nullptr);
    EXPECT_EQ(findText(texts, QStringLiteral("Loose 5")), nullptr);
    EXPECT_EQ(findText(texts, QStringLiteral("Late group")), nullptr);
    EXPECT_NE(findText(texts, QStringLiteral("3 more swatches are not drawn here")), nullptr);

    const std::vector<SvgText> whole = textsOf(drawSwatchSheet(document, QStringLiteral("t")).svg);
    EXPECT_NE(findText(whole, QStringLiteral("Late")), nullptr);
    EXPECT_GT(whole.size(), texts.size());
}
