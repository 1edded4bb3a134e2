// SPDX-License-Identifier: GPL-3.0-or-later
#include "UpdateArchives.h"

#include "PropertyList.h"
#include "TestEnvironment.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <archive.h>
#include <archive_entry.h>
#include <gtest/gtest.h>
#include <memory>
#include <unistd.h>

namespace UpdateArchives {

namespace {

    QByteArray linkTarget(const QString& path)
    {
        char target[4096];
        const ssize_t length
            = ::readlink(QFile::encodeName(path).constData(), target, sizeof target);
        return length < 0 ? QByteArray() : QByteArray(target, length);
    }

}

void makeBundle(const QString& path, const QString& identifier, const QString& version,
    const QByteArray& script, const QVariantMap& extraInfo)
{
    QVariantMap info = extraInfo;
    info.insert("CFBundleIdentifier", identifier);
    info.insert("CFBundleVersion", version);
    info.insert("CFBundleShortVersionString", version);
    info.insert("CFBundleExecutable", "run");
    QDir().mkpath(path + "/Contents/Linux");
    ASSERT_TRUE(PropertyList::writeXmlAtomically(info, path + "/Contents/Info.plist"));
    const QString executable = path + "/Contents/Linux/run";
    TestEnvironment::writeFile(executable, script);
    QFile::setPermissions(executable,
        QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ExeGroup
            | QFile::ReadOther | QFile::ExeOther);
}

QList<Entry> entriesOf(const QString& folder)
{
    const QDir parent = QFileInfo(folder).absoluteDir();
    QList<Entry> entries { { QFileInfo(folder).fileName().toUtf8(), {}, Entry::Folder, 0755 } };
    QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
        QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        Entry entry { parent.relativeFilePath(info.absoluteFilePath()).toUtf8(), {} };
        entry.mode
            = int(QFile::permissions(info.absoluteFilePath()) & QFile::ExeOwner ? 0755 : 0644);
        if (info.isSymLink()) {
            entry.kind = Entry::SymbolicLink;
            entry.contents = linkTarget(info.absoluteFilePath());
        } else if (info.isDir()) {
            entry.kind = Entry::Folder;
            entry.mode = 0755;
        } else {
            entry.contents = TestEnvironment::readFile(info.absoluteFilePath());
        }
        entries.append(entry);
    }
    return entries;
}

QByteArray pack(const QList<Entry>& entries, Format format)
{
    QByteArray output;
    std::unique_ptr<archive, int (*)(archive*)> writer(archive_write_new(), archive_write_free);
    if (format == Format::Zip) {
        archive_write_set_format_zip(writer.get());
    } else {
        archive_write_set_format_pax_restricted(writer.get());
        if (format == Format::TarXz)
            archive_write_add_filter_xz(writer.get());
        else
            archive_write_add_filter_gzip(writer.get());
    }
    // No padding after the compressed data: a cut archive is then really cut.
    archive_write_set_bytes_in_last_block(writer.get(), 1);
    archive_write_open(
        writer.get(), &output, nullptr,
        [](archive*, void* data, const void* buffer, size_t length) -> la_ssize_t {
            static_cast<QByteArray*>(data)->append(static_cast<const char*>(buffer), length);
            return la_ssize_t(length);
        },
        nullptr);
    for (const Entry& item : entries) {
        std::unique_ptr<archive_entry, void (*)(archive_entry*)> entry(
            archive_entry_new(), archive_entry_free);
        archive_entry_set_pathname(entry.get(), item.path.constData());
        archive_entry_set_perm(entry.get(), item.mode);
        switch (item.kind) {
        case Entry::File:
            archive_entry_set_filetype(entry.get(), AE_IFREG);
            archive_entry_set_size(entry.get(), item.contents.size());
            break;
        case Entry::Folder:
            archive_entry_set_filetype(entry.get(), AE_IFDIR);
            break;
        case Entry::SymbolicLink:
            archive_entry_set_filetype(entry.get(), AE_IFLNK);
            archive_entry_set_symlink(entry.get(), item.contents.constData());
            break;
        case Entry::HardLink:
            archive_entry_set_filetype(entry.get(), AE_IFREG);
            archive_entry_set_hardlink(entry.get(), item.contents.constData());
            break;
        }
        EXPECT_EQ(archive_write_header(writer.get(), entry.get()), ARCHIVE_OK)
            << archive_error_string(writer.get());
        if (item.kind == Entry::File)
            archive_write_data(
                writer.get(), item.contents.constData(), size_t(item.contents.size()));
    }
    archive_write_close(writer.get());
    return output;
}

QString fingerprint(const QString& folder)
{
    QStringList lines;
    const QString parent = QFileInfo(folder).absolutePath() + '/';
    for (const Entry& entry : entriesOf(folder)) {
        const QFileInfo info(parent + QString::fromUtf8(entry.path));
        lines.append(QString::fromUtf8(entry.path) + ' ' + QString::number(entry.kind) + ' '
            + QString::number(int(info.permissions()), 16) + ' '
            + QCryptographicHash::hash(entry.contents, QCryptographicHash::Sha256).toHex());
    }
    lines.sort();
    return lines.join('\n');
}

}
