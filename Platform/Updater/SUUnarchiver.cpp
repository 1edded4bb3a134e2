// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUUnarchiver.h"

#include <QDir>
#include <QFileInfo>
#include <archive.h>
#include <archive_entry.h>
#include <memory>
#include <optional>
#include <sys/stat.h>

namespace SUUnarchiver {

namespace {

    using ArchivePointer = std::unique_ptr<archive, int (*)(archive*)>;

    // The path's parts, "." and empty parts dropped; nothing for an absolute path or one that
    // climbs with "..".
    std::optional<QList<QByteArray>> safeParts(const QByteArray& path)
    {
        if (path.startsWith('/'))
            return std::nullopt;
        QList<QByteArray> parts;
        for (const QByteArray& part : path.split('/')) {
            if (part == "..")
                return std::nullopt;
            if (!part.isEmpty() && part != ".")
                parts.append(part);
        }
        return parts;
    }

    // A symbolic link at `linkParts` pointing at `target` stays inside the folder.
    bool linkStaysInside(const QList<QByteArray>& linkParts, const QByteArray& target)
    {
        if (target.isEmpty() || target.startsWith('/'))
            return false;
        qsizetype depth = linkParts.size() - 1; // the folder that holds the link
        for (const QByteArray& part : target.split('/')) {
            if (part == "..") {
                if (--depth < 0)
                    return false;
            } else if (!part.isEmpty() && part != ".") {
                ++depth;
            }
        }
        return true;
    }

    QString printable(const QByteArray& path) { return QString::fromUtf8(path); }

    // A link already unpacked on the way to the entry (or in its place) would carry the entry
    // wherever the link points, past the checks of the link's own target.
    bool passesThroughALink(const QByteArray& folder, const QList<QByteArray>& parts)
    {
        QByteArray path = folder;
        for (const QByteArray& part : parts) {
            path += '/' + part;
            struct stat status = {};
            if (::lstat(path.constData(), &status) != 0)
                return false;
            if (S_ISLNK(status.st_mode))
                return true;
        }
        return false;
    }

    QString entryProblem(archive_entry* entry, const QByteArray& folder, QByteArray* destination,
        QByteArray* hardlinkDestination)
    {
        const QByteArray path = archive_entry_pathname(entry);
        const auto parts = safeParts(path);
        if (!parts)
            return QStringLiteral("The entry “%1” would land outside its folder.")
                .arg(printable(path));
        if (parts->isEmpty())
            return {}; // the archive's own top folder, "./"
        if (passesThroughALink(folder, *parts))
            return QStringLiteral("The entry “%1” would be written through a link.")
                .arg(printable(path));
        *destination = folder + '/' + parts->join('/');

        if (const char* hardlink = archive_entry_hardlink(entry)) {
            const auto target = safeParts(hardlink);
            if (!target || target->isEmpty())
                return QStringLiteral("The link “%1” points outside its folder.")
                    .arg(printable(path));
            *hardlinkDestination = folder + '/' + target->join('/');
            return {};
        }
        switch (archive_entry_filetype(entry)) {
        case AE_IFREG:
        case AE_IFDIR:
            return {};
        case AE_IFLNK:
            if (!linkStaysInside(*parts, archive_entry_symlink(entry)))
                return QStringLiteral("The link “%1” points outside its folder.")
                    .arg(printable(path));
            return {};
        default:
            return QStringLiteral("The entry “%1” is not a file, folder or link.")
                .arg(printable(path));
        }
    }

}

bool unpack(QByteArrayView data, const QString& folder, QString* error)
{
    const auto fail = [error](const QString& message) {
        if (error)
            *error = message;
        return false;
    };
    // libarchive refuses to write through links, also through any in the folder's own path: use
    // the path without them.
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    if (canonical.isEmpty() || !QFileInfo(canonical).isDir())
        return fail(QStringLiteral("The folder %1 to unpack into does not exist.").arg(folder));
    const QByteArray root = QFile::encodeName(canonical);

    ArchivePointer reader(archive_read_new(), archive_read_free);
    archive_read_support_format_tar(reader.get());
    archive_read_support_format_zip(reader.get());
    archive_read_support_filter_gzip(reader.get());
    archive_read_support_filter_xz(reader.get());
    if (archive_read_open_memory(reader.get(), data.data(), size_t(data.size())) != ARCHIVE_OK)
        return fail(QStringLiteral("The archive is damaged or of an unknown kind: %1")
                        .arg(QString::fromUtf8(archive_error_string(reader.get()))));

    ArchivePointer writer(archive_write_disk_new(), archive_write_free);
    archive_write_disk_set_options(writer.get(),
        ARCHIVE_EXTRACT_TIME | ARCHIVE_EXTRACT_SECURE_SYMLINKS | ARCHIVE_EXTRACT_SECURE_NODOTDOT);

    int entries = 0;
    for (;;) {
        archive_entry* entry = nullptr;
        const int status = archive_read_next_header(reader.get(), &entry);
        if (status == ARCHIVE_EOF)
            break;
        if (status < ARCHIVE_WARN)
            return fail(QStringLiteral("The archive is damaged: %1")
                            .arg(QString::fromUtf8(archive_error_string(reader.get()))));
        QByteArray destination;
        QByteArray hardlinkDestination;
        const QString problem = entryProblem(entry, root, &destination, &hardlinkDestination);
        if (!problem.isEmpty())
            return fail(problem);
        if (destination.isEmpty())
            continue;
        archive_entry_set_pathname(entry, destination.constData());
        if (!hardlinkDestination.isEmpty())
            archive_entry_set_hardlink(entry, hardlinkDestination.constData());
        if (archive_read_extract2(reader.get(), entry, writer.get()) < ARCHIVE_WARN)
            return fail(QStringLiteral("The entry “%1” could not be unpacked: %2")
                            .arg(printable(archive_entry_pathname(entry)).mid(root.size() + 1),
                                QString::fromUtf8(archive_error_string(reader.get()))));
        ++entries;
    }
    if (archive_write_close(writer.get()) != ARCHIVE_OK)
        return fail(QStringLiteral("The archive could not be unpacked: %1")
                        .arg(QString::fromUtf8(archive_error_string(writer.get()))));
    if (entries == 0)
        return fail(QStringLiteral("The archive is empty."));
    return true;
}

}
