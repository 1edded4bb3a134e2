// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ParseResult.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QString>
#include <memory>

namespace Preview {

// A document's bytes, mapped read-only into memory (read into a buffer where the file cannot be
// mapped). An empty file is not a file of any kind we preview; a file that cannot be opened
// throws RenderingFailure, since that is not the document's fault.
class DocumentFile {
public:
    static Formats::ParseResult<std::shared_ptr<DocumentFile>> open(const QString& path);

    QByteArrayView bytes() const { return m_bytes; }

    DocumentFile(const DocumentFile&) = delete;
    DocumentFile& operator=(const DocumentFile&) = delete;

private:
    DocumentFile() = default;

    QFile m_file;
    QByteArray m_buffer;
    QByteArrayView m_bytes;
};

}
