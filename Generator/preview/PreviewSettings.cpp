// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewSettings.h"

#include "VistrelUtilities.h"

#include <QMetaType>
#include <cmath>
#include <exception>
#include <optional>

namespace Preview {

namespace {

    bool isNumber(const QVariant& value)
    {
        switch (value.typeId()) {
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
        case QMetaType::Double:
        case QMetaType::Float:
            return true;
        default:
            return false;
        }
    }

    // Booleans as the platform's boolForKey reads them: a boolean, a number, or YES/NO text.
    bool boolValue(const QVariantMap& values, const QString& key, bool fallback)
    {
        const QVariant value = values.value(key);
        if (value.typeId() == QMetaType::Bool)
            return value.toBool();
        if (isNumber(value))
            return value.toDouble() != 0;
        if (value.typeId() == QMetaType::QString) {
            const QString text = value.toString().trimmed().toLower();
            if (text == u"yes" || text == u"true" || text == u"1")
                return true;
            if (text == u"no" || text == u"false" || text == u"0")
                return false;
        }
        return fallback;
    }

    std::optional<double> numberValue(const QVariantMap& values, const QString& key)
    {
        const QVariant value = values.value(key);
        if (isNumber(value) && std::isfinite(value.toDouble()))
            return value.toDouble();
        if (value.typeId() == QMetaType::QString) {
            bool ok = false;
            const double number = value.toString().trimmed().toDouble(&ok);
            if (ok && std::isfinite(number))
                return number;
        }
        return std::nullopt;
    }

    // An integer within [low, high], else the fallback; fractions are cut off.
    qint64 integerValue(
        const QVariantMap& values, const QString& key, qint64 low, qint64 high, qint64 fallback)
    {
        const std::optional<double> number = numberValue(values, key);
        if (!number || *number < double(low) || *number > double(high))
            return fallback;
        return qint64(std::trunc(*number));
    }

    float megabytesValue(const QVariantMap& values, const QString& key, float fallback)
    {
        const std::optional<double> number = numberValue(values, key);
        return number && *number >= 0 ? float(*number) : fallback;
    }

    BackgroundColor backgroundValue(const QVariantMap& values)
    {
        const qint64 tag = integerValue(values, imageBackgroundColorTag, 0, 3, -1);
        if (tag >= 0)
            return BackgroundColor(tag);
        const QString name = values.value(imageBackgroundColorName).toString();
        if (name == imageBackgroundColorNameNone)
            return BackgroundColor::None;
        if (name == imageBackgroundColorNameGray)
            return BackgroundColor::Gray;
        if (name == imageBackgroundColorNameBlack)
            return BackgroundColor::Black;
        return BackgroundColor::White;
    }

    // The largest page limit we honour; a preview of thousands of pages helps nobody.
    constexpr qint64 MostPages = 1000;

}

PreviewSettings PreviewSettings::fromDictionary(const QVariantMap& values)
{
    const PreviewSettings d;
    PreviewSettings s;
    s.warnAboutDoubleClicks
        = boolValue(values, warnAboutDoubleClicksInPreview, d.warnAboutDoubleClicks);
    s.useLoupe = boolValue(values, VTPUseLoupe, d.useLoupe);
    s.showFonts = boolValue(values, showFontsInPreview, d.showFonts);
    s.showImageLinks = boolValue(values, showImageLinksInPreview, d.showImageLinks);
    s.showColorSwatches = boolValue(values, showColorSwatchesInPreview, d.showColorSwatches);
    s.updateFrequency = integerValue(values, ::updateFrequency, 0, 36500, d.updateFrequency);
    s.lastUpdateCheck = numberValue(values, ::lastUpdateCheck).value_or(d.lastUpdateCheck);
    s.showWysiwygFonts = boolValue(values, showWYSIWYGFontsInPreview, d.showWysiwygFonts);
    s.swatchMode = SwatchMode(
        integerValue(values, illustratorColorSwatchModeInPreview, 0, 1, int(d.swatchMode)));
    s.background = backgroundValue(values);
    s.thumbnailEmbeddedThresholdMB = megabytesValue(
        values, preferEmbeddedPreviewForThumbnailFileSizeThreshold, d.thumbnailEmbeddedThresholdMB);
    s.previewEmbeddedThresholdMB = megabytesValue(
        values, preferEmbeddedPreviewForPreviewFileSizeThreshold, d.previewEmbeddedThresholdMB);
    s.maximumPages
        = int(integerValue(values, maximumNumberOfPagesPreviewed, 1, MostPages, d.maximumPages));
    s.previewMode = PreviewMode(integerValue(values, TLPreviewMode, 0, 2, int(d.previewMode)));
    s.inDesignSpreadMode
        = int(integerValue(values, TLPrefInDesignSpreadMode, 0, 1, d.inDesignSpreadMode));
    s.illustratorSpreadMode
        = int(integerValue(values, TLPrefIllustratorSpreadMode, 0, 1, d.illustratorSpreadMode));
    return s;
}

PreviewSettings PreviewSettings::fromUserDefaults()
{
    try {
        return fromDictionary(VTUserDefaults());
    } catch (const std::exception&) {
        // A store whose version marker is not text: the previews still draw, with the defaults.
        return fromDictionary(VTDefaults());
    }
}

int PreviewSettings::pageLimit() const
{
    return previewMode == PreviewMode::FirstPage ? 1 : maximumPages;
}

namespace {
    bool atLeastMegabytes(qint64 fileSize, float megabytes)
    {
        return double(fileSize) >= double(megabytes) * 1e6;
    }
}

bool PreviewSettings::preferEmbeddedForPreview(qint64 fileSize) const
{
    return atLeastMegabytes(fileSize, previewEmbeddedThresholdMB);
}

bool PreviewSettings::preferEmbeddedForThumbnail(qint64 fileSize) const
{
    return atLeastMegabytes(fileSize, thumbnailEmbeddedThresholdMB);
}

}
