// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipArchive.h"

#include <archive.h>
#include <archive_entry.h>
#include <memory>

namespace Formats {

namespace {

    using Archive = std::unique_ptr<archive, decltype(&archive_read_free)>;

    ParseFailure damaged(const QString& why)
    {
        return fail(FormatError::DamagedFile, QStringLiteral("ZIP: %1").arg(why));
    }

    ParseFailure unsupported(const QString& why)
    {
        return fail(FormatError::UnsupportedVariant, QStringLiteral("ZIP: %1").arg(why));
    }

    QString errorOf(archive* reader)
    {
        const char* text = archive_error_string(reader);
        return text ? QString::fromUtf8(text) : QStringLiteral("unknown error");
    }

    // Inflates the current entry, never past the limits: a bomb stops being read at the limit,
    // whatever size it declared.
    struct EntryRead {
        QByteArray contents;
        std::optional<ParseFailure> refused; // past a limit: the whole archive is refused
        QString problem; // the entry alone is unreadable
    };

    EntryRead readEntry(archive* reader, const QString& name, qint64 declared, qint64 allowed)
    {
        EntryRead result;
        char chunk[65536];
        for (;;) {
            const la_ssize_t got = archive_read_data(reader, chunk, sizeof chunk);
            if (got == 0)
                break;
            if (got < 0) {
                result.problem = QStringLiteral("%1: %2").arg(name, errorOf(reader));
                return result;
            }
            if (result.contents.size() + got > allowed
                || (declared >= 0 && result.contents.size() + got > declared)) {
                result.refused = unsupported(
                    QStringLiteral("%1 inflates to more than the limit or its declared size")
                        .arg(name));
                return result;
            }
            result.contents.append(chunk, got);
        }
        return result;
    }

}

ParseResult<ZipContents> readZip(
    QByteArrayView bytes, const std::function<bool(const QString& name)>& wanted, ZipLimits limits)
{
    Archive reader(archive_read_new(), &archive_read_free);
    // The seekable reader goes by the central directory, as the applications that write
    // packages do; the streaming one would trust local headers that a hostile file can forge.
    archive_read_support_format_zip_seekable(reader.get());
    if (archive_read_open_memory(reader.get(), bytes.data(), size_t(bytes.size())) != ARCHIVE_OK) {
        if (bytes.startsWith("PK\x03\x04"))
            return damaged(QStringLiteral("the archive is cut short or its directory is broken"));
        return fail(FormatError::NotThisKind, QStringLiteral("not a ZIP archive"));
    }

    ZipContents contents;
    qint64 inflated = 0;
    archive_entry* entry = nullptr;
    for (;;) {
        const int status = archive_read_next_header(reader.get(), &entry);
        if (status == ARCHIVE_EOF)
            break;
        if (status < ARCHIVE_WARN)
            return damaged(errorOf(reader.get()));
        if (contents.names.size() >= limits.maxEntries)
            return unsupported(
                QStringLiteral("more entries than the %1 we read").arg(limits.maxEntries));
        const char* utf8 = archive_entry_pathname_utf8(entry);
        const QString name = QString::fromUtf8(utf8 ? utf8 : archive_entry_pathname(entry));
        contents.names.append(name);
        if (!wanted(name))
            continue;
        if (archive_entry_is_encrypted(entry))
            return unsupported(QStringLiteral("%1 is encrypted").arg(name));
        const qint64 declared = archive_entry_size_is_set(entry) ? archive_entry_size(entry) : -1;
        if (declared > limits.maxEntrySize
            || inflated + std::max<qint64>(declared, 0) > limits.maxTotalSize)
            return unsupported(
                QStringLiteral("%1 is larger (%2 bytes) than we read").arg(name).arg(declared));
        EntryRead read = readEntry(reader.get(), name, declared,
            std::min(limits.maxEntrySize, limits.maxTotalSize - inflated));
        if (read.refused)
            return *read.refused;
        inflated += read.contents.size();
        if (!read.problem.isEmpty())
            contents.problems.append(read.problem);
        else
            contents.entries[name] = std::move(read.contents);
    }
    return contents;
}

}
