// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewContent.h"
#include "XmpMetadata.h"

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace Preview::Kinds {

// What the XML of an interchange document (INX or IDML) tells about it, before it becomes
// preview content.
struct InterchangeParts {
    std::vector<PreviewFont> fonts;
    std::vector<PreviewSwatch> colors;
    QStringList linkUris; // as written, usually file: URLs
    std::optional<Formats::XmpMetadata> xmp;
    int spreadCount = 0;
    // Parts that could not be read, in one line each; what they held before the fault is kept.
    QStringList problems;
};

}
