// SPDX-License-Identifier: GPL-3.0-or-later
// Chosen by CMake when libfreehand and libmwaw are found.
#include "FreeHandPreviewer.h"
#include "PreviewerTable.h"

namespace Preview {

std::vector<PreviewerEntry> optionalPreviewers()
{
    return { { Formats::FileKind::FreeHand,
        [] { return std::make_unique<FreeHandPreviewer>(); } } };
}

}
