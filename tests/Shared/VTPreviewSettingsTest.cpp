// SPDX-License-Identifier: GPL-3.0-or-later
// The one reading of the seventeen settings: typed, as the platform's getters read stored values;
// what is missing or out of range takes the default of VTDefaults().
#include "VTPreviewSettings.h"

#include "VistrelUtilities.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

TEST(VTPreviewSettings, StoredValuesReadAsThePlatformsGettersDo)
{
    const struct {
        QVariantMap stored; // over the defaults
        std::function<bool(const VTPreviewSettings&)> holds;
    } cases[] = {
        // Text as the preferences window reads it: "0.0" is false, "2abc" is 2.
        { { { showFontsInPreview, "0.0" } }, [](auto& s) { return !s.showFonts; } },
        { { { TLPreviewMode, "2abc" } },
            [](auto& s) { return s.previewMode == VTPreviewMode::Grid; } },
        { { { maximumNumberOfPagesPreviewed, 3.9 } }, [](auto& s) { return s.maximumPages == 3; } },
        { { { maximumNumberOfPagesPreviewed, qint64(0) } },
            [](auto& s) { return s.maximumPages == 20; } },
        { { { preferEmbeddedPreviewForPreviewFileSizeThreshold, 0.5f } },
            [](auto& s) {
                return s.preferEmbeddedForPreview(500000) && !s.preferEmbeddedForPreview(499999);
            } },
        { { { preferEmbeddedPreviewForThumbnailFileSizeThreshold, -1.0 } },
            [](auto& s) { return s.thumbnailEmbeddedThresholdMB == 128.0; } },
        // The background's tag wins over its name where it means a colour.
        { { { imageBackgroundColorName, "White" }, { imageBackgroundColorTag, "3x" } },
            [](auto& s) { return s.background == VTBackgroundColor::Black; } },
        { { { imageBackgroundColorName, "Gray" }, { imageBackgroundColorTag, qint64(7) } },
            [](auto& s) { return s.background == VTBackgroundColor::Gray; } },
    };
    for (const auto& c : cases) {
        QVariantMap values = VTDefaults();
        values.insert(c.stored);
        EXPECT_TRUE(c.holds(VTPreviewSettings::fromDictionary(values)))
            << c.stored.firstKey().toStdString() << " = "
            << c.stored.first().toString().toStdString();
    }
}

}
