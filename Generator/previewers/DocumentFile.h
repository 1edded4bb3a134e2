// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ParseResult.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QString>
#include <memory>
#include <vector>

namespace Preview {

// A document's bytes, mapped read-only into memory (read into a buffer where the file cannot be
// mapped). A file of any size fits the generator's address space: up to MostMappedWhole it is
// mapped whole, beyond that only in windows (its head, its tail, and parts asked for), which the
// kinds whose files grow that large (PostScript, PDF) read their comments, markers and embedded
// pictures from. An empty file is not a file of any kind we preview; a file that cannot be
// opened throws RenderingFailure, since that is not the document's fault.
class DocumentFile {
public:
    static constexpr qint64 MostMappedWhole = 500 * 1000 * 1000;
    static constexpr qint64 WindowSize = qint64(32) << 20;

    static Formats::ParseResult<std::shared_ptr<DocumentFile>> open(const QString& path);
    // For readers that need every byte: a file larger than MostMappedWhole is an unsupported
    // variant whose reason says the limit.
    static Formats::ParseResult<std::shared_ptr<DocumentFile>> openWhole(const QString& path);

    qint64 size() const { return m_size; }
    bool isWhole() const { return m_head.size() == m_size; }
    // The whole file, when it is mapped whole.
    QByteArrayView bytes() const { return m_head; }
    // The whole file, or its first and its last window.
    QByteArrayView head() const { return m_head; }
    QByteArrayView tail() const { return m_tail; }
    // Bytes [offset, offset + length) of the file, mapped on first use for as long as this
    // object lives; empty when they lie outside the file or are more than a window.
    QByteArrayView window(qint64 offset, qint64 length);

    DocumentFile(const DocumentFile&) = delete;
    DocumentFile& operator=(const DocumentFile&) = delete;

private:
    DocumentFile() = default;
    QByteArrayView mapped(qint64 offset, qint64 length, QByteArray& buffer);

    QFile m_file;
    qint64 m_size = 0;
    QByteArray m_headBuffer;
    QByteArray m_tailBuffer;
    QByteArrayView m_head;
    QByteArrayView m_tail;
    std::vector<QByteArray> m_windowBuffers;
};

// "2.1 GB": a size as the messages about limits say it.
QString sizeInWords(qint64 bytes);

}
