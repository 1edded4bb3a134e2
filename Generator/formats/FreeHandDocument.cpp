// SPDX-License-Identifier: GPL-3.0-or-later
#include "FreeHandDocument.h"

#include <libfreehand/libfreehand.h>
#include <libmwaw/libmwaw.hxx>
#include <librevenge-stream/librevenge-stream.h>
#include <librevenge/librevenge.h>

namespace Formats {

namespace {

    // The early versions, whose files libfreehand does not know.
    bool isEarlyFreeHand(librevenge::RVNGInputStream& input)
    {
        MWAWDocument::Type type = MWAWDocument::MWAW_T_UNKNOWN;
        MWAWDocument::Kind kind = MWAWDocument::MWAW_K_UNKNOWN;
        const auto confidence = MWAWDocument::isFileFormatSupported(&input, type, kind);
        input.seek(0, librevenge::RVNG_SEEK_SET);
        return confidence == MWAWDocument::MWAW_C_EXCELLENT && type == MWAWDocument::MWAW_T_FREEHAND
            && kind == MWAWDocument::MWAW_K_DRAW;
    }

}

ParseResult<std::vector<QByteArray>> freeHandSvgPages(QByteArrayView bytes)
{
    librevenge::RVNGStringStream input(
        reinterpret_cast<const unsigned char*>(bytes.data()), unsigned(bytes.size()));
    librevenge::RVNGStringVector output;
    librevenge::RVNGSVGDrawingGenerator generator(output, "svg");
    bool parsed = false;
    if (libfreehand::FreeHandDocument::isSupported(&input)) {
        input.seek(0, librevenge::RVNG_SEEK_SET);
        parsed = libfreehand::FreeHandDocument::parse(&input, &generator);
    } else if (isEarlyFreeHand(input)) {
        parsed = MWAWDocument::parse(&input, &generator) == MWAWDocument::MWAW_R_OK;
    } else {
        return fail(FormatError::NotThisKind, QStringLiteral("not a FreeHand document"));
    }
    if (!parsed)
        return fail(
            FormatError::DamagedFile, QStringLiteral("FreeHand: the document cannot be read"));
    std::vector<QByteArray> pages;
    for (unsigned index = 0; index < output.size(); ++index)
        pages.emplace_back(output[index].cstr(), qsizetype(output[index].size()));
    if (pages.empty())
        return fail(FormatError::DamagedFile, QStringLiteral("FreeHand: the document has no page"));
    return pages;
}

}
