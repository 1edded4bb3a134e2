// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewContent.h"

#include <QString>

namespace Preview {

// A file a document links to, from the path it records: a file: URL, an absolute path (of this
// system or of the one the document was made on, "C:\Jobs\photo.tif"), or a path relative to the
// document's folder. A link that is not there is looked for by its file name beside the document
// and in the Links folder beside it, where a packaged job keeps its links and where the design
// applications look when they relink; found there, the link is that file. Links that are not
// files (http: and the like) are kept as recorded and never exist.
PreviewLink linkedFile(const QString& recorded, const QString& documentPath);

}
