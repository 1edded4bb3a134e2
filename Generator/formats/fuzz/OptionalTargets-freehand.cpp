// SPDX-License-Identifier: GPL-3.0-or-later
// Chosen by CMake when the FreeHand reader is built.
#include "FreeHandDocument.h"
#include "FuzzEntryPoints.h"

namespace FuzzEntryPoints {

namespace {

    bool freeHand(const std::uint8_t* data, std::size_t size)
    {
        const auto pages = Formats::freeHandSvgPages(
            QByteArrayView(reinterpret_cast<const char*>(data), qsizetype(size)));
        if (!pages)
            return !pages.reason().isEmpty();
        for (const QByteArray& svg : *pages) {
            if (!svg.contains("<svg"))
                return false;
        }
        return !pages->empty();
    }

}

std::vector<Target> optionalTargets() { return { { "freehand", freeHand } }; }

}
