// SPDX-License-Identifier: GPL-3.0-or-later
#include "DocumentFile.h"

#include "Previewer.h"

#include <cmath>

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
    document->m_size = size;
    if (size == 0)
        return Formats::fail(
            Formats::FormatError::NotThisKind, QStringLiteral("the file is empty"));
    if (size <= MostMappedWhole) {
        document->m_head = document->mapped(0, size, document->m_headBuffer);
        document->m_tail = document->m_head;
    } else {
        document->m_head = document->mapped(0, WindowSize, document->m_headBuffer);
        document->m_tail = document->mapped(size - WindowSize, WindowSize, document->m_tailBuffer);
    }
    return document;
}

Formats::ParseResult<std::shared_ptr<DocumentFile>> DocumentFile::openWhole(const QString& path)
{
    auto document = open(path);
    if (document && !(*document)->isWhole())
        return Formats::fail(Formats::FormatError::UnsupportedVariant,
            QStringLiteral("the file is %1 large; files of this kind are read up to %2")
                .arg(sizeInWords((*document)->size()), sizeInWords(MostMappedWhole)));
    return document;
}

QByteArrayView DocumentFile::window(qint64 offset, qint64 length)
{
    if (offset < 0 || length <= 0 || length > WindowSize || offset > m_size - length)
        return {};
    if (isWhole())
        return m_head.sliced(offset, length);
    return mapped(offset, length, m_windowBuffers.emplace_back());
}

QByteArrayView DocumentFile::mapped(qint64 offset, qint64 length, QByteArray& buffer)
{
    if (uchar* bytes = m_file.map(offset, length))
        return QByteArrayView(reinterpret_cast<const char*>(bytes), length);
    if (!m_file.seek(offset))
        return {};
    buffer = m_file.read(length);
    return buffer;
}

QString sizeInWords(qint64 bytes)
{
    const double megabytes = double(bytes) / 1e6;
    if (megabytes >= 1000)
        return QStringLiteral("%1 GB").arg(megabytes / 1000, 0, 'f', 1);
    return QStringLiteral("%1 MB").arg(std::round(megabytes));
}

}
