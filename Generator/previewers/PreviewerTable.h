// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FileKindSniffer.h"
#include "ParseResult.h"
#include "Previewer.h"

#include <QString>
#include <functional>
#include <memory>
#include <vector>

namespace Preview {

// One kind of document and the previewer that draws it.
struct PreviewerEntry {
    Formats::FileKind kind;
    std::function<std::unique_ptr<Previewer>()> make;
};

// The kinds this build previews: those every build has, then the optional ones.
const std::vector<PreviewerEntry>& previewerTable();

// The previewers of the kinds whose libraries the build found: OptionalPreviewers-*.cpp, one of
// which CMake chooses by the libraries it finds.
std::vector<PreviewerEntry> optionalPreviewers();

// The previewer for a kind; none for Unknown or a kind this build does not preview.
std::unique_ptr<Previewer> previewerForKind(Formats::FileKind kind);

// The kind to preview a file as, from its first bytes and the type identifier the caller gives
// (may be empty). Not this kind when the bytes surely say another kind than the identifier, or
// when neither tells a kind we preview. A ZIP archive is looked into for an IDML package.
Formats::ParseResult<Formats::FileKind> chooseFileKind(const QString& file, const QString& uti);

}
