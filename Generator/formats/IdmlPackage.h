// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "InterchangeParts.h"
#include "ParseResult.h"
#include "ZipArchive.h"

#include <QByteArrayView>

namespace Formats {

inline constexpr QByteArrayView IdmlMimeType("application/vnd.adobe.indesign-idml-package");

// Whether a ZIP archive is an IDML package by its content: a "mimetype" entry naming IDML
// wherever it stands (tools that zip a package again do not keep it first), or, without one,
// the package's root document designmap.xml.
bool isIdmlPackage(QByteArrayView bytes);

// Reads an IDML package: the metadata (META-INF/metadata.xml), the fonts and colours of its
// resources, the spreads, and the links of the spreads and stories. A ZIP archive that is not an
// IDML package is not this kind; a part that inflates past the limits makes the whole package
// unsupported; any other part that cannot be read is noted in problems and skipped.
ParseResult<InterchangeParts> readIdmlPackage(QByteArrayView bytes, ZipLimits limits = {});

}
