// SPDX-License-Identifier: GPL-3.0-or-later
// The settings as the previews read them: typed, and tolerant of values of the wrong kind.
#include "PreviewSettings.h"

#include "VistrelUtilities.h"

#include <QDateTime>
#include <functional>
#include <gtest/gtest.h>

using namespace Preview;

namespace {

QVariantMap with(const QString& key, const QVariant& value)
{
    QVariantMap values = VTDefaults();
    values.insert(key, value);
    return values;
}

TEST(PreviewSettings, DefaultsOfTheStoreGiveTheDefaultSettings)
{
    const PreviewSettings read = PreviewSettings::fromDictionary(VTDefaults());
    const PreviewSettings defaults;
    EXPECT_EQ(read.maximumPages, 20);
    EXPECT_EQ(read.background, BackgroundColor::White);
    EXPECT_EQ(read.swatchMode, SwatchMode::List);
    EXPECT_EQ(read.inDesignSpreadMode, 1);
    EXPECT_EQ(read.illustratorSpreadMode, 0);
    EXPECT_FLOAT_EQ(read.thumbnailEmbeddedThresholdMB, 128);
    EXPECT_FLOAT_EQ(read.previewEmbeddedThresholdMB, 256);
    EXPECT_EQ(read.previewMode, defaults.previewMode);
    EXPECT_TRUE(read.showFonts && read.showImageLinks && read.showColorSwatches && read.useLoupe
        && read.warnAboutDoubleClicks && read.showWysiwygFonts);
}

struct ValueCase {
    const char* name;
    QString key;
    QVariant value;
    std::function<bool(const PreviewSettings&)> holds;
};

class StoredValue : public testing::TestWithParam<ValueCase> { };

TEST_P(StoredValue, ReadsAsExpected)
{
    const ValueCase& c = GetParam();
    EXPECT_TRUE(c.holds(PreviewSettings::fromDictionary(with(c.key, c.value))));
}

INSTANTIATE_TEST_SUITE_P(Values, StoredValue,
    testing::Values(
        ValueCase { "BooleanOff", showFontsInPreview, false, [](auto& s) { return !s.showFonts; } },
        ValueCase { "BooleanAsNumber", showImageLinksInPreview, qint64(0),
            [](auto& s) { return !s.showImageLinks; } },
        ValueCase { "BooleanAsNoText", VTPUseLoupe, QStringLiteral("NO"),
            [](auto& s) { return !s.useLoupe; } },
        ValueCase { "BooleanAsOtherTextKeepsDefault", VTPUseLoupe, QStringLiteral("perhaps"),
            [](auto& s) { return s.useLoupe; } },
        ValueCase { "PageLimitAsDouble", maximumNumberOfPagesPreviewed, 3.0,
            [](auto& s) { return s.maximumPages == 3; } },
        ValueCase { "PageLimitAsText", maximumNumberOfPagesPreviewed, QStringLiteral("7"),
            [](auto& s) { return s.maximumPages == 7; } },
        ValueCase { "PageLimitZeroKeepsDefault", maximumNumberOfPagesPreviewed, qint64(0),
            [](auto& s) { return s.maximumPages == 20; } },
        ValueCase { "PageLimitAsDateKeepsDefault", maximumNumberOfPagesPreviewed,
            QDateTime::currentDateTimeUtc(), [](auto& s) { return s.maximumPages == 20; } },
        ValueCase { "FirstPageModeLimitsToOne", TLPreviewMode, qint64(1),
            [](auto& s) { return s.pageLimit() == 1; } },
        ValueCase { "GridMode", TLPreviewMode, qint64(2),
            [](auto& s) { return s.previewMode == PreviewMode::Grid; } },
        ValueCase { "UnknownModeKeepsDefault", TLPreviewMode, qint64(9),
            [](auto& s) { return s.previewMode == PreviewMode::AllPages; } },
        ValueCase { "ChipMode", illustratorColorSwatchModeInPreview, qint64(0),
            [](auto& s) { return s.swatchMode == SwatchMode::Chips; } },
        ValueCase { "ThresholdAsFloat", preferEmbeddedPreviewForPreviewFileSizeThreshold, 0.5f,
            [](auto& s) {
                return s.preferEmbeddedForPreview(500000) && !s.preferEmbeddedForPreview(499999);
            } },
        ValueCase { "NegativeThresholdKeepsDefault",
            preferEmbeddedPreviewForThumbnailFileSizeThreshold, -1.0,
            [](auto& s) { return s.thumbnailEmbeddedThresholdMB == 128.0f; } },
        ValueCase { "SpreadModeAsBoolKeepsDefault", TLPrefIllustratorSpreadMode, true,
            [](auto& s) { return s.illustratorSpreadMode == 0; } }),
    [](const auto& info) { return std::string(info.param.name); });

struct BackgroundCase {
    const char* name;
    QVariant colorName;
    QVariant tag;
    BackgroundColor expected;
};

class Background : public testing::TestWithParam<BackgroundCase> { };

TEST_P(Background, TagWinsOverName)
{
    const BackgroundCase& c = GetParam();
    QVariantMap values = VTDefaults();
    values.remove(imageBackgroundColorName);
    values.remove(imageBackgroundColorTag);
    if (c.colorName.isValid())
        values.insert(imageBackgroundColorName, c.colorName);
    if (c.tag.isValid())
        values.insert(imageBackgroundColorTag, c.tag);
    EXPECT_EQ(PreviewSettings::fromDictionary(values).background, c.expected);
}

INSTANTIATE_TEST_SUITE_P(Pairs, Background,
    testing::Values(BackgroundCase { "AgreeingPair", "Black", qint64(3), BackgroundColor::Black },
        BackgroundCase { "DisagreeingPairFollowsTag", "White", qint64(0), BackgroundColor::None },
        BackgroundCase { "TagOutOfRangeFollowsName", "Gray", qint64(7), BackgroundColor::Gray },
        BackgroundCase {
            "TagAsTextFollowsIt", "White", QStringLiteral("2"), BackgroundColor::Gray },
        BackgroundCase { "OnlyName", "None", QVariant(), BackgroundColor::None },
        BackgroundCase { "UnknownNameAndNoTag", "Purple", QVariant(), BackgroundColor::White }),
    [](const auto& info) { return std::string(info.param.name); });

}
