// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace Preview::Html {

// The page's style sheet, with the colours of both themes.
QString styleSheet();
// The loupe: a round magnifier that follows the pointer over a page picture.
QString loupeScript();

}
