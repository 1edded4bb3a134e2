// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FileKindSniffer.h"
#include "ParseResult.h"
#include "Previewer.h"

#include <QString>
#include <memory>

namespace Preview {

// The previewer for a kind of file; none for Unknown or a kind this build does not preview.
std::unique_ptr<Previewer> previewerForKind(Formats::FileKind kind);

// The kind to preview a file as, from its first bytes and the type identifier the caller gives
// (may be empty). Not this kind when the bytes surely say another kind than the identifier, or
// when neither tells a kind we preview.
Formats::ParseResult<Formats::FileKind> chooseFileKind(const QString& file, const QString& uti);

}
