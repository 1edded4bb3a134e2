// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "InterchangeParts.h"
#include "ParseResult.h"
#include "ZipArchive.h"

#include <QByteArrayView>

namespace Preview::Kinds {

inline constexpr QByteArrayView IdmlMimeType("application/vnd.adobe.indesign-idml-package");

// Reads an IDML package: the metadata (META-INF/metadata.xml), the fonts and colours of its
// resources, the spreads, and the links of the spreads and stories. A ZIP archive without the
// IDML mimetype is not this kind; a part that inflates past the limits makes the whole package
// unsupported; any other part that cannot be read is noted in problems and skipped.
Formats::ParseResult<InterchangeParts> readIdmlPackage(QByteArrayView bytes, ZipLimits limits = {});

}
