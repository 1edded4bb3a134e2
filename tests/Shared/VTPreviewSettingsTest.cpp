// SPDX-License-Identifier: GPL-3.0-or-later
// The one reading of the seventeen settings: typed, as the platform's getters read stored values,
// with the defaults of VTDefaults().
#include "VTPreviewSettings.h"

#include "VistrelUtilities.h"

#include <QDateTime>
#include <functional>
#include <gtest/gtest.h>

namespace {

QVariantMap with(const QString& key, const QVariant& value)
{
    QVariantMap values = VTDefaults();
    values.insert(key, value);
    return values;
}

TEST(VTPreviewSettings, MissingValuesTakeTheDefaultsOfTheStore)
{
    const VTPreviewSettings read = VTPreviewSettings::fromDictionary({});
    EXPECT_EQ(read.maximumPages, VTDefaults().value(maximumNumberOfPagesPreviewed).toInt());
    EXPECT_EQ(read.background, VTBackgroundColor::White);
    EXPECT_EQ(read.swatchMode, VTSwatchMode::List);
    EXPECT_EQ(read.inDesignSpreadMode, VTSpreadMode::Spreads);
    EXPECT_EQ(read.illustratorSpreadMode, VTSpreadMode::SinglePages);
    EXPECT_DOUBLE_EQ(read.thumbnailEmbeddedThresholdMB, 128);
    EXPECT_DOUBLE_EQ(read.previewEmbeddedThresholdMB, 256);
    EXPECT_EQ(read.previewMode, VTPreviewMode::AllPages);
    EXPECT_EQ(read.updateFrequency, 1);
    EXPECT_TRUE(read.showFonts && read.showImageLinks && read.showColorSwatches && read.useLoupe
        && read.warnAboutDoubleClicks && read.showWysiwygFonts);
}

struct ValueCase {
    const char* name;
    QString key;
    QVariant value;
    std::function<bool(const VTPreviewSettings&)> holds;
};

class StoredValue : public testing::TestWithParam<ValueCase> { };

TEST_P(StoredValue, ReadsAsThePlatformsGettersDo)
{
    const ValueCase& c = GetParam();
    EXPECT_TRUE(c.holds(VTPreviewSettings::fromDictionary(with(c.key, c.value))));
}

INSTANTIATE_TEST_SUITE_P(Values, StoredValue,
    testing::Values(
        // Text as the preferences window reads it: "0.0" is false, "2abc" is 2.
        ValueCase { "ZeroPointZeroTextIsFalse", showFontsInPreview, QStringLiteral("0.0"),
            [](auto& s) { return !s.showFonts; } },
        ValueCase { "YesTextIsTrue", VTPUseLoupe, QStringLiteral("yes"),
            [](auto& s) { return s.useLoupe; } },
        ValueCase { "ModeWithTrailingLetters", TLPreviewMode, QStringLiteral("2abc"),
            [](auto& s) { return s.previewMode == VTPreviewMode::Grid; } },
        ValueCase { "PageLimitAsDouble", maximumNumberOfPagesPreviewed, 3.9,
            [](auto& s) { return s.maximumPages == 3; } },
        ValueCase { "PageLimitZeroIsTheDefault", maximumNumberOfPagesPreviewed, qint64(0),
            [](auto& s) { return s.maximumPages == 20; } },
        ValueCase { "FirstPageModeLimitsToOne", TLPreviewMode, qint64(1),
            [](auto& s) { return s.pageLimit() == 1; } },
        ValueCase { "UnknownModeIsTheDefault", TLPreviewMode, qint64(9),
            [](auto& s) { return s.previewMode == VTPreviewMode::AllPages; } },
        ValueCase { "ThresholdAsFloat", preferEmbeddedPreviewForPreviewFileSizeThreshold, 0.5f,
            [](auto& s) {
                return s.preferEmbeddedForPreview(500000) && !s.preferEmbeddedForPreview(499999);
            } },
        ValueCase { "NegativeThresholdIsTheDefault",
            preferEmbeddedPreviewForThumbnailFileSizeThreshold, -1.0,
            [](auto& s) { return s.thumbnailEmbeddedThresholdMB == 128.0; } }),
    [](const auto& info) { return std::string(info.param.name); });

struct BackgroundCase {
    const char* name;
    QVariant colorName;
    QVariant tag;
    VTBackgroundColor expected;
};

class Background : public testing::TestWithParam<BackgroundCase> { };

TEST_P(Background, TagWinsOverName)
{
    const BackgroundCase& c = GetParam();
    QVariantMap values;
    if (c.colorName.isValid())
        values.insert(imageBackgroundColorName, c.colorName);
    if (c.tag.isValid())
        values.insert(imageBackgroundColorTag, c.tag);
    EXPECT_EQ(VTPreviewSettings::fromDictionary(values).background, c.expected);
}

INSTANTIATE_TEST_SUITE_P(Pairs, Background,
    testing::Values(
        BackgroundCase { "DisagreeingPairFollowsTag", "White", qint64(0), VTBackgroundColor::None },
        BackgroundCase { "TagOutOfRangeFollowsName", "Gray", qint64(7), VTBackgroundColor::Gray },
        BackgroundCase {
            "TagAsTextFollowsIt", "White", QStringLiteral("3x"), VTBackgroundColor::Black },
        BackgroundCase { "UnknownNameAndNoTag", "Purple", QVariant(), VTBackgroundColor::White }),
    [](const auto& info) { return std::string(info.param.name); });

}
