// SPDX-License-Identifier: GPL-3.0-or-later
// Sample files: tests/data/formats/ase (MIT; see tests/data/README.md).
#include "SwatchExchange.h"

#include "AseFileBuilder.h"
#include "FormatsTestData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Formats;

namespace {

QString modelText(AseColorModel model)
{
    switch (model) {
    case AseColorModel::Cmyk:
        return QStringLiteral("CMYK");
    case AseColorModel::Rgb:
        return QStringLiteral("RGB");
    case AseColorModel::Lab:
        return QStringLiteral("LAB");
    case AseColorModel::Gray:
        return QStringLiteral("Gray");
    case AseColorModel::Unknown:
        break;
    }
    return QStringLiteral("unknown");
}

QString typeText(AseSwatchType type)
{
    switch (type) {
    case AseSwatchType::Global:
        return QStringLiteral("Global");
    case AseSwatchType::Spot:
        return QStringLiteral("Spot");
    case AseSwatchType::Normal:
        return QStringLiteral("Process");
    }
    return QStringLiteral("type %1").arg(int(type));
}

// The shape of the expected-parse JSON files beside the samples.
QJsonObject toJson(const AseSwatch& swatch)
{
    QJsonArray values;
    for (float value : swatch.values)
        values.append(double(value));
    return QJsonObject { { "name", swatch.name }, { "type", typeText(swatch.type) },
        { "data", QJsonObject { { "mode", modelText(swatch.model) }, { "values", values } } } };
}

QJsonArray toJson(const std::vector<AseSwatch>& swatches, const std::vector<AseGroup>& groups)
{
    QJsonArray items;
    for (const AseSwatch& swatch : swatches)
        items.append(toJson(swatch));
    for (const AseGroup& group : groups) {
        QJsonArray inner = toJson(group.swatches, group.groups);
        items.append(QJsonObject {
            { "name", group.name }, { "type", "Color Group" }, { "swatches", inner } });
    }
    return items;
}

AseDocument parsed(const QByteArray& bytes)
{
    const auto result = parseSwatchExchange(bytes);
    EXPECT_TRUE(result.ok()) << result.reason().toStdString();
    return result.ok() ? result.value() : AseDocument();
}

}

class AseExpectedParse : public testing::TestWithParam<const char*> { };

TEST_P(AseExpectedParse, matchesTheJsonBesideTheSample)
{
    const QString name = QString::fromLatin1(GetParam());
    const AseDocument document = parsed(formatSample(QStringLiteral("ase/%1.ase").arg(name)));
    const QJsonArray expected
        = QJsonDocument::fromJson(formatSample(QStringLiteral("ase/%1.json").arg(name))).array();
    EXPECT_FALSE(expected.isEmpty());
    EXPECT_EQ(toJson(document.swatches, document.groups), expected);
}

INSTANTIATE_TEST_SUITE_P(Samples, AseExpectedParse,
    testing::Values("sampler", "solarized", "empty-white-folder", "single-white-swatch-in-folder",
        "white-swatch-no-folder"));

// An unknown model and an unknown type keep their numbers.
TEST(SwatchExchange, readsEveryModelWithEveryType)
{
    struct Model {
        QByteArray code;
        AseColorModel model;
        std::initializer_list<float> values;
    };
    const Model models[] = { { "CMYK", AseColorModel::Cmyk, { 0.1f, 0.2f, 0.3f, 0.4f } },
        { "RGB ", AseColorModel::Rgb, { 0.5f, 0.25f, 1 } },
        { "LAB ", AseColorModel::Lab, { 0.5f, -20, 35.5f } },
        { "Gray", AseColorModel::Gray, { 0.75f } },
        { "HSB ", AseColorModel::Unknown, { 0.1f, 0.2f, 0.3f } } };
    for (const Model& model : models) {
        for (std::uint16_t type : { 0, 1, 2, 7 }) {
            SCOPED_TRACE(model.code.toStdString() + " type " + std::to_string(type));
            const AseDocument document
                = parsed(AseFileBuilder()
                             .color(QStringLiteral("Ünïcode ✓"), model.code, model.values, type)
                             .bytes());
            ASSERT_EQ(document.swatches.size(), 1u);
            const AseSwatch& swatch = document.swatches[0];
            EXPECT_EQ(swatch.name, QStringLiteral("Ünïcode ✓"));
            EXPECT_EQ(swatch.model, model.model);
            EXPECT_EQ(swatch.modelCode, model.code);
            EXPECT_EQ(swatch.values, std::vector<float>(model.values));
            EXPECT_EQ(swatch.type, AseSwatchType(type));
        }
    }
}

// A swatch after an inner group belongs to the outer one; a group end without a group, a block
// of an unknown kind and a group left open are tolerated.
TEST(SwatchExchange, buildsTheGroupTree)
{
    const AseDocument document = parsed(AseFileBuilder()
                                            .groupEnd()
                                            .block(0x0042, "opaque")
                                            .groupStart("Outer")
                                            .groupStart("Inner")
                                            .color("B", "Gray", { 0.2f }, 1)
                                            .groupEnd()
                                            .color("C", "Gray", { 0.3f }, 0)
                                            .groupEnd()
                                            .groupStartWithoutName()
                                            .color("Kept", "RGB ", { 1, 1, 1 }, 2)
                                            .bytes());
    EXPECT_TRUE(document.swatches.empty());
    ASSERT_EQ(document.groups.size(), 2u);
    const AseGroup& outer = document.groups[0];
    EXPECT_EQ(outer.name, QStringLiteral("Outer"));
    ASSERT_EQ(outer.swatches.size(), 1u);
    EXPECT_EQ(outer.swatches[0].name, QStringLiteral("C"));
    ASSERT_EQ(outer.groups.size(), 1u);
    EXPECT_EQ(outer.groups[0].name, QStringLiteral("Inner"));
    ASSERT_EQ(outer.groups[0].swatches.size(), 1u);
    EXPECT_EQ(outer.groups[0].swatches[0].name, QStringLiteral("B"));
    EXPECT_TRUE(document.groups[1].name.isEmpty());
    ASSERT_EQ(document.groups[1].swatches.size(), 1u);
    EXPECT_EQ(document.groups[1].swatches[0].name, QStringLiteral("Kept"));
}

static QByteArray deeplyNested(int depth)
{
    AseFileBuilder builder;
    for (int i = 0; i < depth; ++i)
        builder.groupStart(QString::number(i));
    return builder.bytes();
}

// Block lengths and counts that run past the file are found by cutting files short, below.
TEST(SwatchExchange, refusesWithTheKindOfError)
{
    const std::pair<QByteArray, FormatError> cases[] = {
        { QByteArray("ASEG\0\1\0\0\0\0\0\0", 12), FormatError::NotThisKind },
        { AseFileBuilder().version(2, 0).bytes(), FormatError::UnsupportedVariant },
        { AseFileBuilder().declaredBlockCount(0xFFFFFFFF).bytes(), FormatError::DamagedFile },
        { AseFileBuilder().block(0x0001, QByteArray("\x00\x40\x00\x41", 4)).bytes(),
            FormatError::DamagedFile },
        { AseFileBuilder()
                .block(0x0001, AseFileBuilder::name("X") + "CMYK" + QByteArray(8, '\0'))
                .bytes(),
            FormatError::DamagedFile },
        { deeplyNested(65), FormatError::UnsupportedVariant },
    };
    for (const auto& [bytes, error] : cases) {
        const auto result = parseSwatchExchange(bytes);
        ASSERT_FALSE(result.ok()) << bytes.toHex().left(80).toStdString();
        EXPECT_EQ(result.error(), error) << result.reason().toStdString();
        EXPECT_FALSE(result.reason().isEmpty());
        EXPECT_FALSE(result.reason().contains(u'\n'));
    }
}

TEST(SwatchExchange, readsGroupsNestedAsDeeplyAsAllowed)
{
    const AseDocument document = parsed(deeplyNested(64));
    const AseGroup* group = &document.groups.at(0);
    int depth = 1;
    for (; !group->groups.empty(); ++depth)
        group = &group->groups[0];
    EXPECT_EQ(depth, 64);
}

// A file cut short anywhere, even inside its signature, is damaged, never read as less.
TEST(SwatchExchange, everyTruncationIsADamagedFile)
{
    QList<QByteArray> files;
    for (const char* name : { "sampler.ase", "hex-test.ase" })
        files.append(formatSample(QStringLiteral("ase/") + QLatin1String(name)));
    files.append(AseFileBuilder()
                     .groupStart("G")
                     .color("A", "CMYK", { 1, 0, 0, 0 }, 0)
                     .groupStart("H")
                     .color("B", "LAB ", { 1, 2, 3 }, 1)
                     .groupEnd()
                     .groupEnd()
                     .bytes());
    for (const QByteArray& file : files) {
        ASSERT_TRUE(parseSwatchExchange(file).ok());
        for (qsizetype length = 0; length < file.size(); ++length) {
            const auto result = parseSwatchExchange(QByteArrayView(file).first(length));
            ASSERT_FALSE(result.ok()) << "length " << length;
            EXPECT_EQ(result.error(), FormatError::DamagedFile) << "length " << length;
        }
    }
}
