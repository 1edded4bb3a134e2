// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewContent.h"

#include <QColor>

namespace Preview {

// The screen colour of a swatch from its model and values (see PreviewSwatch): a naive
// conversion, good enough for a chip. Invalid for a model it does not know or too few values.
QColor swatchDisplayColor(const PreviewSwatch& swatch);

}
