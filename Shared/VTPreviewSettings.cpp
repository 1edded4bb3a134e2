// SPDX-License-Identifier: GPL-3.0-or-later
#include "VTPreviewSettings.h"

#include "StringValues.h"
#include "UserDefaults.h"
#include "VistrelUtilities.h"

#include <cmath>
#include <exception>
#include <optional>

namespace {

// The value as a number the way the platform's getters read it; nothing for other kinds.
std::optional<double> numberOf(const QVariant& value)
{
    if (value.typeId() == QMetaType::QString)
        return StringValues::doubleValue(value.toString());
    if (UserDefaults::isNumber(value) && std::isfinite(value.toDouble()))
        return value.toDouble();
    return std::nullopt;
}

std::optional<bool> boolOf(const QVariant& value)
{
    if (value.typeId() == QMetaType::QString)
        return StringValues::boolValue(value.toString());
    if (UserDefaults::isNumber(value))
        return value.toDouble() != 0;
    return std::nullopt;
}

// Whole numbers read as integerForKey reads them: text up to its first non-digit, numbers cut.
std::optional<qint64> integerOf(const QVariant& value)
{
    if (value.typeId() == QMetaType::QString)
        return StringValues::integerValue(value.toString());
    if (UserDefaults::isNumber(value) && std::isfinite(value.toDouble())
        && std::abs(value.toDouble()) < 9.2e18)
        return qint64(value.toDouble());
    return std::nullopt;
}

class Reader {
public:
    explicit Reader(const std::function<QVariant(const QString&)>& valueForKey)
        : m_valueForKey(valueForKey)
        , m_defaults(VTDefaults())
    {
    }

    bool boolean(const QString& key) const
    {
        return boolOf(m_valueForKey(key)).value_or(boolOf(m_defaults.value(key)).value_or(false));
    }

    // An integer within [low, high]; anything else is the default.
    qint64 integer(const QString& key, qint64 low, qint64 high) const
    {
        const auto value = integerOf(m_valueForKey(key));
        if (value && *value >= low && *value <= high)
            return *value;
        return integerOf(m_defaults.value(key)).value_or(low);
    }

    double nonNegative(const QString& key) const
    {
        const auto value = numberOf(m_valueForKey(key));
        if (value && *value >= 0)
            return *value;
        return numberOf(m_defaults.value(key)).value_or(0);
    }

    double number(const QString& key) const
    {
        return numberOf(m_valueForKey(key)).value_or(numberOf(m_defaults.value(key)).value_or(0));
    }

    VTBackgroundColor background() const
    {
        static const QStringList names { imageBackgroundColorNameNone,
            imageBackgroundColorNameWhite, imageBackgroundColorNameGray,
            imageBackgroundColorNameBlack };
        const auto tag = integerOf(m_valueForKey(imageBackgroundColorTag));
        if (tag && *tag >= 0 && *tag < names.size())
            return VTBackgroundColor(*tag);
        const QVariant name = m_valueForKey(imageBackgroundColorName);
        if (name.typeId() == QMetaType::QString && names.contains(name.toString()))
            return VTBackgroundColor(names.indexOf(name.toString()));
        return VTBackgroundColor(integer(imageBackgroundColorTag, 0, 3));
    }

private:
    const std::function<QVariant(const QString&)>& m_valueForKey;
    const QVariantMap m_defaults;
};

bool atLeastMegabytes(qint64 fileSize, double megabytes)
{
    return double(fileSize) >= megabytes * 1e6;
}

}

VTPreviewSettings::VTPreviewSettings()
    : VTPreviewSettings(read([](const QString&) { return QVariant(); }))
{
}

VTPreviewSettings VTPreviewSettings::read(
    const std::function<QVariant(const QString& key)>& valueForKey)
{
    const Reader r(valueForKey);
    VTPreviewSettings s { Unread() };
    s.warnAboutDoubleClicks = r.boolean(warnAboutDoubleClicksInPreview);
    s.useLoupe = r.boolean(VTPUseLoupe);
    s.showFonts = r.boolean(showFontsInPreview);
    s.showImageLinks = r.boolean(showImageLinksInPreview);
    s.showColorSwatches = r.boolean(showColorSwatchesInPreview);
    s.updateFrequency = r.integer(::updateFrequency, 1, 365);
    s.lastUpdateCheck = r.number(::lastUpdateCheck);
    s.showWysiwygFonts = r.boolean(showWYSIWYGFontsInPreview);
    s.swatchMode = VTSwatchMode(r.integer(illustratorColorSwatchModeInPreview, 0, 1));
    s.background = r.background();
    s.thumbnailEmbeddedThresholdMB
        = r.nonNegative(preferEmbeddedPreviewForThumbnailFileSizeThreshold);
    s.previewEmbeddedThresholdMB = r.nonNegative(preferEmbeddedPreviewForPreviewFileSizeThreshold);
    s.maximumPages = int(r.integer(maximumNumberOfPagesPreviewed, 1, MostPages));
    s.previewMode = VTPreviewMode(r.integer(TLPreviewMode, 0, 2));
    s.inDesignSpreadMode = VTSpreadMode(r.integer(TLPrefInDesignSpreadMode, 0, 1));
    s.illustratorSpreadMode = VTSpreadMode(r.integer(TLPrefIllustratorSpreadMode, 0, 1));
    return s;
}

VTPreviewSettings VTPreviewSettings::fromDictionary(const QVariantMap& values)
{
    return read([&values](const QString& key) { return values.value(key); });
}

VTPreviewSettings VTPreviewSettings::fromUserDefaults()
{
    try {
        return fromDictionary(VTUserDefaults());
    } catch (const std::exception&) {
        // A store whose version marker is not text: the previews still draw, with the defaults.
        return fromDictionary(VTDefaults());
    }
}

int VTPreviewSettings::pageLimit() const
{
    return previewMode == VTPreviewMode::FirstPage ? 1 : maximumPages;
}

bool VTPreviewSettings::preferEmbeddedForPreview(qint64 fileSize) const
{
    return atLeastMegabytes(fileSize, previewEmbeddedThresholdMB);
}

bool VTPreviewSettings::preferEmbeddedForThumbnail(qint64 fileSize) const
{
    return atLeastMegabytes(fileSize, thumbnailEmbeddedThresholdMB);
}
