// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>
#include <QtGlobal>

namespace Preview {

enum class BackgroundColor { None = 0, White = 1, Gray = 2, Black = 3 };
// 0 every page in a column, 1 the first page only, 2 a grid of small pages.
enum class PreviewMode { AllPages = 0, FirstPage = 1, Grid = 2 };
// 0 a grid of colour chips, 1 a list with the colour values.
enum class SwatchMode { Chips = 0, List = 1 };

// The seventeen settings of the shared preferences store as typed values. A value of the wrong
// kind (text where a number belongs, a number out of range) gives the default, never an error.
struct PreviewSettings {
    bool warnAboutDoubleClicks = true;
    bool useLoupe = true;
    bool showFonts = true;
    bool showImageLinks = true;
    bool showColorSwatches = true;
    qint64 updateFrequency = 1; // the application's updater; no effect on previews
    double lastUpdateCheck = 0.0; // likewise
    bool showWysiwygFonts = true;
    SwatchMode swatchMode = SwatchMode::List;
    // "Image Background Color Tag" when it is 0..3, else the "Name" when it is one of the four
    // names, else White: the tag is what the preferences window's menu stores last.
    BackgroundColor background = BackgroundColor::White;
    float thumbnailEmbeddedThresholdMB = 128.0f; // megabytes (10^6 bytes)
    float previewEmbeddedThresholdMB = 256.0f;
    int maximumPages = 20; // at least 1
    PreviewMode previewMode = PreviewMode::AllPages;
    int inDesignSpreadMode = 1; // SpreadMode values
    int illustratorSpreadMode = 0;

    // Reads VTUserDefaults() afresh; a store that cannot be read gives the defaults.
    static PreviewSettings fromUserDefaults();
    static PreviewSettings fromDictionary(const QVariantMap& values);

    // How many pages a previewer draws at most: 1 in FirstPage mode, else maximumPages.
    int pageLimit() const;
    // Whether a file of this many bytes is shown by the picture embedded in it, when it has one.
    bool preferEmbeddedForPreview(qint64 fileSize) const;
    bool preferEmbeddedForThumbnail(qint64 fileSize) const;
};

}
