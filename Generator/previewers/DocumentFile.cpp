// SPDX-License-Identifier: GPL-3.0-or-later
#include "DocumentFile.h"

#include "Previewer.h"

namespace Preview {

Formats::ParseResult<std::shared_ptr<DocumentFile>> DocumentFile::open(const QString& path)
{
    std::shared_ptr<DocumentFile> document(new DocumentFile);
    document->m_file.setFileName(path);
    if (!document->m_file.open(QIODevice::ReadOnly))
        throw RenderingFailure(QStringLiteral("cannot read the file: %1")
                                   .arg(document->m_file.errorString())
                                   .toStdString());
    const qint64 size = document->m_file.size();
    if (size == 0)
        return Formats::fail(
            Formats::FormatError::NotThisKind, QStringLiteral("the file is empty"));
    if (uchar* mapped = document->m_file.map(0, size)) {
        document->m_bytes = QByteArrayView(reinterpret_cast<const char*>(mapped), size);
    } else {
        document->m_buffer = document->m_file.readAll();
        document->m_bytes = document->m_buffer;
    }
    return document;
}

}
