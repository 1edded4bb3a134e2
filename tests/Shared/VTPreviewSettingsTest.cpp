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

TEST(VTPreviewSettings, StoredValuesReadAsThePlatformsGettersDo)
{
    const struct {
        QString key;
        QVariant value;
        std::function<bool(const VTPreviewSettings&)> holds;
    } cases[] = {
        // Text as the preferences window reads it: "0.0" is false, "2abc" is 2.
        { showFontsInPreview, QStringLiteral("0.0"), [](auto& s) { return !s.showFonts; } },
        { VTPUseLoupe, QStringLiteral("yes"), [](auto& s) { return s.useLoupe; } },
        { TLPreviewMode, QStringLiteral("2abc"),
            [](auto& s) { return s.previewMode == VTPreviewMode::Grid; } },
        { maximumNumberOfPagesPreviewed, 3.9, [](auto& s) { return s.maximumPages == 3; } },
        { maximumNumberOfPagesPreviewed, qint64(0), [](auto& s) { return s.maximumPages == 20; } },
        { TLPreviewMode, qint64(1), [](auto& s) { return s.pageLimit() == 1; } },
        { TLPreviewMode, qint64(9),
            [](auto& s) { return s.previewMode == VTPreviewMode::AllPages; } },
        { preferEmbeddedPreviewForPreviewFileSizeThreshold, 0.5f,
            [](auto& s) {
                return s.preferEmbeddedForPreview(500000) && !s.preferEmbeddedForPreview(499999);
            } },
        { preferEmbeddedPreviewForThumbnailFileSizeThreshold, -1.0,
            [](auto& s) { return s.thumbnailEmbeddedThresholdMB == 128.0; } },
    };
    for (const auto& c : cases)
        EXPECT_TRUE(c.holds(VTPreviewSettings::fromDictionary(with(c.key, c.value))))
            << c.key.toStdString() << " = " << c.value.toString().toStdString();
}

// The tag wins over the name where it means a colour.
TEST(VTPreviewSettings, TheBackgroundTagWinsOverTheName)
{
    const struct {
        QVariant colorName;
        QVariant tag;
        VTBackgroundColor expected;
    } cases[] = {
        { "White", qint64(0), VTBackgroundColor::None },
        { "Gray", qint64(7), VTBackgroundColor::Gray },
        { "White", QStringLiteral("3x"), VTBackgroundColor::Black },
        { "Purple", QVariant(), VTBackgroundColor::White },
    };
    for (const auto& c : cases) {
        QVariantMap values { { imageBackgroundColorName, c.colorName } };
        if (c.tag.isValid())
            values.insert(imageBackgroundColorTag, c.tag);
        EXPECT_EQ(VTPreviewSettings::fromDictionary(values).background, c.expected)
            << c.colorName.toString().toStdString() << " " << c.tag.toString().toStdString();
    }
}

}
