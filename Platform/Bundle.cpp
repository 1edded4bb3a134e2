// SPDX-License-Identifier: GPL-3.0-or-later
#include "Bundle.h"

#include "PropertyList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>
#include <QStringDecoder>
#include <mutex>
#include <optional>
#include <sys/stat.h>

namespace {

// What tells one reading of a file from the next: a file replaced, rewritten or touched differs.
struct FileStamp {
    dev_t device;
    ino_t inode;
    off_t size;
    time_t seconds;
    long nanoseconds;
    bool operator==(const FileStamp&) const = default;
};

std::optional<FileStamp> fileStamp(const QString& path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return FileStamp { status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
        status.st_mtim.tv_nsec };
}

QString mainBundlePath()
{
    const QFileInfo executable(QFile::symLinkTarget(QStringLiteral("/proc/self/exe")));
    const QDir folder = executable.absoluteDir();
    QDir contents = folder;
    if (contents.cdUp() && contents.dirName() == QStringLiteral("Contents") && contents.cdUp())
        return contents.absolutePath();
    return folder.absolutePath();
}

// Folder names to look in for localised resources, most preferred first.
QStringList localizationFolders()
{
    QStringList names;
    for (const QString& language : QLocale::system().uiLanguages()) {
        QString name = language;
        name.replace(QLatin1Char('-'), QLatin1Char('_'));
        names << name << name.section(QLatin1Char('_'), 0, 0);
    }
    names << QStringLiteral("en") << QStringLiteral("Base");
    names.removeDuplicates();
    return names;
}

QString decodeStringsFile(const QByteArray& bytes)
{
    if (bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff"))
        return QStringDecoder(QStringDecoder::Utf16)(bytes);
    return QString::fromUtf8(bytes);
}

QString unescape(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        QChar c = text.at(i);
        if (c == QLatin1Char('\\') && i + 1 < text.size()) {
            c = text.at(++i);
            if (c == QLatin1Char('n'))
                c = QLatin1Char('\n');
            else if (c == QLatin1Char('t'))
                c = QLatin1Char('\t');
        }
        result.append(c);
    }
    return result;
}

// A strings file: either a property-list dictionary or lines of "key" = "value";
QVariantMap readStringsFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    if (const auto plist = PropertyList::fromData(bytes);
        plist && plist->typeId() == QMetaType::QVariantMap)
        return plist->toMap();
    static const QRegularExpression entry(
        QStringLiteral(R"re("((?:[^"\\]|\\.)*)"\s*=\s*"((?:[^"\\]|\\.)*)"\s*;)re"));
    QVariantMap strings;
    auto matches = entry.globalMatch(decodeStringsFile(bytes));
    while (matches.hasNext()) {
        const auto match = matches.next();
        strings.insert(unescape(match.captured(1)), unescape(match.captured(2)));
    }
    return strings;
}

}

// The last reading of Info.plist, and the file it was read from.
struct Bundle::InfoCache {
    std::mutex mutex;
    std::optional<FileStamp> file;
    QVariantMap dictionary;
};

Bundle::Bundle(QString path)
    : m_path(std::move(path))
    , m_info(std::make_unique<InfoCache>())
{
}

Bundle::~Bundle() = default;

const Bundle& Bundle::mainBundle()
{
    static const Bundle bundle(mainBundlePath());
    return bundle;
}

std::unique_ptr<Bundle> Bundle::bundleWithPath(const QString& path)
{
    const QFileInfo info(path);
    if (!info.isDir())
        return nullptr;
    return std::unique_ptr<Bundle>(new Bundle(info.absoluteFilePath()));
}

QString Bundle::contentsPath() const { return m_path + QStringLiteral("/Contents"); }

QString Bundle::resourcePath() const { return contentsPath() + QStringLiteral("/Resources"); }

QString Bundle::executablePath() const
{
    const QString name = infoDictionary().value(QStringLiteral("CFBundleExecutable")).toString();
    if (name.isEmpty())
        return {};
    return contentsPath() + QStringLiteral("/Linux/") + name;
}

QVariantMap Bundle::infoDictionary() const
{
    const QString path = contentsPath() + QStringLiteral("/Info.plist");
    const std::optional<FileStamp> file = fileStamp(path);
    std::lock_guard lock(m_info->mutex);
    if (!file || file != m_info->file) {
        m_info->dictionary = PropertyList::readDictionary(path).value_or(QVariantMap());
        m_info->file = file;
    }
    return m_info->dictionary;
}

QVariantMap Bundle::localizedInfoDictionary() const
{
    QVariantMap dictionary = infoDictionary();
    for (const QString& folder : localizationFolders()) {
        const QString path = resourcePath() + QLatin1Char('/') + folder
            + QStringLiteral(".lproj/InfoPlist.strings");
        if (!QFileInfo::exists(path))
            continue;
        const QVariantMap strings = readStringsFile(path);
        for (auto it = strings.begin(); it != strings.end(); ++it)
            dictionary.insert(it.key(), it.value());
        break;
    }
    return dictionary;
}

QString Bundle::bundleIdentifier() const
{
    return infoDictionary().value(QStringLiteral("CFBundleIdentifier")).toString();
}

QVariant Bundle::objectForInfoDictionaryKey(const QString& key) const
{
    return infoDictionary().value(key);
}

QString Bundle::pathForResource(const QString& name, const QString& type) const
{
    QString path = resourcePath() + QLatin1Char('/') + name;
    if (!type.isEmpty())
        path += QLatin1Char('.') + type;
    return QFileInfo::exists(path) ? path : QString();
}
