// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSString+SymlinksAndAliases.h"
#include "SearchPaths.h"

#include <QFile>
#include <QStringList>
#include <sys/stat.h>
#include <unistd.h>

namespace SymlinksAndAliases {

namespace {

    // Tilde expansion, then removal of ".", ".." and redundant separators. ".." takes away the
    // component before it; at the root it is dropped, and a relative path keeps its leading ones.
    QString standardizedPath(const QString& path)
    {
        const QString expanded = stringByExpandingTildeInPath(path);
        const bool absolute = expanded.startsWith(u'/');
        QStringList kept;
        for (const QString& component : expanded.split(u'/', Qt::SkipEmptyParts)) {
            if (component == u".")
                continue;
            if (component == u"..") {
                if (!kept.isEmpty() && kept.last() != u"..")
                    kept.removeLast();
                else if (!absolute)
                    kept.append(component);
                continue;
            }
            kept.append(component);
        }
        const QString joined = kept.join(u'/');
        return absolute ? u'/' + joined : joined;
    }

    QString deletingLastPathComponent(const QString& path)
    {
        const qsizetype slash = path.lastIndexOf(u'/');
        if (slash < 0)
            return QStringLiteral("");
        return slash == 0 ? QStringLiteral("/") : path.left(slash);
    }

    QString appendingPathComponent(const QString& path, const QString& component)
    {
        if (path.isEmpty())
            return component;
        return path.endsWith(u'/') ? path + component : path + u'/' + component;
    }

    bool linkStatus(const QString& path, struct stat& status)
    {
        return ::lstat(QFile::encodeName(path).constData(), &status) == 0;
    }

    // The raw target text of a link, or nothing when the path is not a readable link.
    QString readLinkTarget(const QString& path)
    {
        const QByteArray encoded = QFile::encodeName(path);
        QByteArray target(256, Qt::Uninitialized);
        for (;;) {
            const ssize_t length = ::readlink(encoded.constData(), target.data(), target.size());
            if (length < 0)
                return {};
            if (length < target.size()) {
                target.truncate(length);
                return QFile::decodeName(target);
            }
            // The target may have been cut short: try again with more room.
            target.resize(target.size() * 2);
        }
    }

}

QString stringByResolvingSymlinksAndAliases(const QString& path)
{
    if (path.isNull())
        return {};
    const QString standardized = standardizedPath(path);
    if (!standardized.startsWith(u'/'))
        return {};
    QString result = QStringLiteral("/");
    const QStringList components = standardized.split(u'/', Qt::SkipEmptyParts);
    for (const QString& component : components) {
        result
            = stringByIterativelyResolvingSymlinkOrAlias(appendingPathComponent(result, component));
        if (result.isNull())
            return {};
    }
    return result;
}

QString stringByIterativelyResolvingSymlinkOrAlias(const QString& path)
{
    if (path.isNull())
        return {};
    QString current = path;
    struct stat status { };
    if (!linkStatus(current, status))
        return {};
    for (int steps = 0;; ++steps) {
        const bool isLink = S_ISLNK(status.st_mode);
        // Directories are never taken for aliases.
        const QString aliasTarget = isLink || S_ISDIR(status.st_mode)
            ? QString()
            : stringByConditionallyResolvingAlias(current);
        if (!isLink && aliasTarget.isNull())
            return current;
        // A cycle of links would otherwise never end.
        if (steps == maximumLinkSteps)
            return {};
        const QString next = isLink ? stringByConditionallyResolvingSymlink(current) : aliasTarget;
        if (next.isNull() || !linkStatus(next, status))
            return {};
        current = next;
    }
}

QString stringByResolvingSymlink(const QString& path)
{
    const QString target = stringByConditionallyResolvingSymlink(path);
    return target.isNull() ? path : target;
}

QString stringByResolvingAlias(const QString& path)
{
    const QString target = stringByConditionallyResolvingAlias(path);
    return target.isNull() ? path : target;
}

QString stringByConditionallyResolvingSymlink(const QString& path)
{
    if (path.isNull())
        return {};
    const QString target = readLinkTarget(path);
    if (target.isNull())
        return {};
    if (target.startsWith(u'/'))
        return target;
    return standardizedPath(appendingPathComponent(deletingLastPathComponent(path), target));
}

QString stringByConditionallyResolvingAlias(const QString&) { return {}; }

}
