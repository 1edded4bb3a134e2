// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ParseResult.h"

#include <QByteArray>
#include <QByteArrayView>
#include <vector>

namespace Formats {

// A FreeHand document as one SVG document per page, drawn through librevenge: FreeHand 3 to 11
// by libfreehand, FreeHand 1 and 2 by libmwaw. Bytes neither library takes for FreeHand are not
// this kind; a document one takes but cannot read is damaged.
ParseResult<std::vector<QByteArray>> freeHandSvgPages(QByteArrayView bytes);

}
