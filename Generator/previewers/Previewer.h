// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ParseResult.h"
#include "PreviewContent.h"
#include "VTPreviewSettings.h"

#include <QImage>
#include <QString>
#include <stdexcept>

namespace Preview {

// A failure that is not the document's fault: a renderer that is missing, crashes or takes too
// long. The generator reports it as "other failure".
class RenderingFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Turns one kind of document into preview content. A previewer reads the file and nothing
// else: it writes no files and starts no programs other than a renderer whose output it reads
// from a pipe. Errors are the parsers' FormatError kinds with a one-line reason; failures of
// the machinery throw RenderingFailure.
class Previewer {
public:
    virtual ~Previewer() = default;

    // At most settings.pageLimit() pages; pagesLeftOut counts the rest.
    virtual Formats::ParseResult<PreviewContent> preview(
        const QString& file, const VTPreviewSettings& settings)
        = 0;

    // A picture no larger than maxSize × maxSize. The default draws a preview of the first page
    // and scales it down; previewers with a cheaper way (an embedded thumbnail) override it.
    virtual Formats::ParseResult<QImage> thumbnail(
        const QString& file, int maxSize, const VTPreviewSettings& settings);
};

// Scales an image down (never up) to fit maxSize × maxSize, keeping its proportions.
QImage fitWithin(const QImage& image, int maxSize);

}
