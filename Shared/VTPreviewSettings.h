// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariant>
#include <QVariantMap>
#include <QtGlobal>
#include <functional>

// The tags of the background names, in the order the preferences window lists them.
enum class VTBackgroundColor { None = 0, White = 1, Gray = 2, Black = 3 };
// 0 every page in a column, 1 the first page only, 2 a grid of small pages.
enum class VTPreviewMode { AllPages = 0, FirstPage = 1, Grid = 2 };
// 0 a grid of colour chips, 1 a list with the colour values.
enum class VTSwatchMode { Chips = 0, List = 1 };
// 0 pages one below the other, 1 the pages of a spread (or the artboards) side by side.
enum class VTSpreadMode { SinglePages = 0, Spreads = 1 };

// The seventeen settings of the preferences store as typed values: the one reading of the stored
// text that the preferences window shows and the generator draws by. Each value is read as the
// platform's typed getters read it (a number, a boolean, or text read by StringValues: "0.0" is
// false, "2abc" is 2). A missing value, one of another kind (a date, a list), or a number outside
// what the setting allows counts as the default, and the defaults are those of VTDefaults().
struct VTPreviewSettings {
    // The defaults.
    VTPreviewSettings();

    bool warnAboutDoubleClicks;
    bool useLoupe;
    bool showFonts;
    bool showImageLinks;
    bool showColorSwatches;
    qint64 updateFrequency; // days, 1 to 365
    double lastUpdateCheck; // seconds since 1970; 0 for never
    bool showWysiwygFonts;
    VTSwatchMode swatchMode;
    // The tag when it is 0 to 3, else the name when it is one of the four, else the default: the
    // tag is what the preferences window's menu stores first.
    VTBackgroundColor background;
    double thumbnailEmbeddedThresholdMB; // megabytes (10^6 bytes), not negative
    double previewEmbeddedThresholdMB;
    int maximumPages; // 1 to MostPages
    VTPreviewMode previewMode;
    VTSpreadMode inDesignSpreadMode;
    VTSpreadMode illustratorSpreadMode;

    // The largest page limit honoured; a preview of thousands of pages helps nobody.
    static constexpr int MostPages = 1000;

    // Reads every setting through valueForKey (an invalid value for a missing key).
    static VTPreviewSettings read(const std::function<QVariant(const QString& key)>& valueForKey);
    static VTPreviewSettings fromDictionary(const QVariantMap& values);
    // VTUserDefaults() afresh; a store whose version marker is not text gives the defaults.
    static VTPreviewSettings fromUserDefaults();

    // How many pages a preview draws at most: 1 in FirstPage mode, else maximumPages.
    int pageLimit() const;
    // Whether a file of this many bytes is shown by the picture embedded in it, when it has one.
    bool preferEmbeddedForPreview(qint64 fileSize) const;
    bool preferEmbeddedForThumbnail(qint64 fileSize) const;

private:
    struct Unread { };
    explicit VTPreviewSettings(Unread) { }
};
