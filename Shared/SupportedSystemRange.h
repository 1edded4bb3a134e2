// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "QXVersionInfo.h"

#include <optional>

// The operating-system versions the product runs on, one definition per platform (chosen by the
// build): from `lowest` (inclusive) up to `firstUnsupported` (exclusive, when there is one).
struct SupportedSystemRange {
    QXVersion lowest;
    std::optional<QXVersion> firstUnsupported;
};

SupportedSystemRange supportedSystemRange();
