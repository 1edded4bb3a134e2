// SPDX-License-Identifier: GPL-3.0-or-later
#include "DesktopRegistration.h"

#include "Bundle.h"
#include "DesktopEntryFiles.h"
#include "SearchPaths.h"
#include "SystemLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

namespace DesktopRegistration {

namespace {

    // The caches are rebuilt in a moment; this is for a machine under heavy load.
    constexpr int cacheToolMilliseconds = 60000;

    QString dataHome()
    {
        return NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, true)
            .value(0);
    }

    struct Places {
        explicit Places(const QString& identifier)
            : applications(dataHome() + QStringLiteral("/applications"))
            , mime(dataHome() + QStringLiteral("/mime"))
            , entry(applications + u'/' + identifier + QStringLiteral(".desktop"))
            , service(dataHome() + QStringLiteral("/dbus-1/services/") + identifier
                  + QStringLiteral(".service"))
            , package(mime + QStringLiteral("/packages/") + identifier + QStringLiteral(".xml"))
            , icon(dataHome() + QStringLiteral("/icons/hicolor/scalable/apps/") + identifier
                  + QStringLiteral(".svg"))
        {
        }
        QString applications;
        QString mime;
        QString entry;
        QString service;
        QString package;
        QString icon;
    };

    QByteArray contentsOf(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // Writes the file when its contents differ; null contents mean the file should not be there.
    // Records what it changed; false on a failure.
    bool place(const QString& path, const QByteArray& contents, Outcome& outcome)
    {
        const bool exists = QFileInfo::exists(path);
        if (contents.isNull()) {
            if (!exists)
                return true;
            if (!QFile::remove(path)) {
                outcome.error = QStringLiteral("could not remove %1").arg(path);
                return false;
            }
        } else {
            if (exists && contentsOf(path) == contents)
                return true;
            QDir().mkpath(QFileInfo(path).absolutePath());
            QSaveFile file(path);
            if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size()
                || !file.commit()) {
                outcome.error
                    = QStringLiteral("could not write %1: %2").arg(path, file.errorString());
                return false;
            }
        }
        outcome.changedFiles << path;
        return true;
    }

    void runCacheTool(const char* tool, const QString& folder)
    {
        const QString program = QStandardPaths::findExecutable(QString::fromLatin1(tool));
        if (program.isEmpty()) {
            NSLog(QStringLiteral("WARNING -- %1 is not installed: the desktop may not see the "
                                 "changes in %2 at once")
                      .arg(QString::fromLatin1(tool), folder));
            return;
        }
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.setStandardOutputFile(QProcess::nullDevice());
        process.start(program, { folder });
        if (!process.waitForFinished(cacheToolMilliseconds) || process.exitCode() != 0)
            NSLog(QStringLiteral("WARNING -- %1 %2 failed").arg(QString::fromLatin1(tool), folder));
    }

    // The types that the machine's MIME databases know (not the user's).
    QSet<QString> machineMimeTypes()
    {
        QStringList folders = qEnvironmentVariable("XDG_DATA_DIRS").split(u':', Qt::SkipEmptyParts);
        if (folders.isEmpty())
            folders = { QStringLiteral("/usr/local/share"), QStringLiteral("/usr/share") };
        QSet<QString> known;
        for (const QString& folder : std::as_const(folders)) {
            for (const QByteArray& line :
                contentsOf(folder + QStringLiteral("/mime/types")).split('\n'))
                known.insert(QString::fromUtf8(line.trimmed()));
            for (const QByteArray& line :
                contentsOf(folder + QStringLiteral("/mime/aliases")).split('\n'))
                known.insert(QString::fromUtf8(line.left(line.indexOf(' '))));
        }
        known.remove(QString());
        return known;
    }

    // Rebuilds the database; the tool leaves the folder of a media type behind (application/,
    // say) when it no longer defines anything there.
    void rebuildMimeDatabaseAfterRemoval(const QString& mime)
    {
        runCacheTool("update-mime-database", mime);
        for (const QString& folder : QDir(mime).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            QDir(mime).rmdir(folder);
    }

    bool holdsEntries(const QString& mimeCache)
    {
        const QByteArray contents = contentsOf(mimeCache);
        return contents.contains('=');
    }

    // Removes the folders of the path that are empty, up to the user's data folder.
    void removeEmptyFolders(const QString& path)
    {
        const QString home = QDir(dataHome()).absolutePath();
        QDir folder = QFileInfo(path).absoluteDir();
        while (folder.absolutePath().startsWith(home + u'/') && folder.isEmpty()) {
            const QString name = folder.dirName();
            if (!folder.cdUp() || !folder.rmdir(name))
                return;
        }
    }

}

Outcome registerBundle(const Bundle& bundle)
{
    Outcome outcome;
    const QString identifier = bundle.bundleIdentifier();
    const QString executable = bundle.executablePath();
    if (identifier.isEmpty() || !QFileInfo(executable).isExecutable()) {
        outcome.error = QStringLiteral("%1 is not an application bundle").arg(bundle.bundlePath());
        return outcome;
    }
    // A line break ends the service file's line; GIO takes a program path with the escaped "%%"
    // of desktop entries as it stands and finds no such program.
    if (std::any_of(executable.begin(), executable.end(),
            [](QChar c) { return c.unicode() < 0x20 || c == u'%'; })) {
        outcome.error = QStringLiteral("a desktop entry cannot name %1").arg(executable);
        return outcome;
    }

    const Places places(identifier);
    const QString resources = bundle.resourcePath() + u'/' + identifier;
    const QString iconSource = resources + QStringLiteral(".svg");
    const QByteArray icon = contentsOf(iconSource);
    const QString definitions
        = QString::fromUtf8(contentsOf(resources + QStringLiteral("-mime.xml")));
    const QVariantMap info = bundle.infoDictionary();
    QStringList mimeTypes = DesktopEntryFiles::claimedMimeTypes(info);
    mimeTypes += DesktopEntryFiles::definedMimeTypes(definitions);
    mimeTypes.removeDuplicates();

    const QString entry = DesktopEntryFiles::desktopEntry(
        QString::fromUtf8(contentsOf(resources + QStringLiteral(".desktop"))),
        info.value(QStringLiteral("CFBundleName")).toString(), executable, mimeTypes,
        icon.isNull() ? QString() : identifier);
    const QString service = QStringLiteral("[D-BUS Service]\nName=") + identifier
        + QStringLiteral("\nExec=") + DesktopEntryFiles::serviceExecArgument(executable) + u'\n';
    const QString package = DesktopEntryFiles::packageWithout(definitions, machineMimeTypes());

    if (!place(places.icon, icon, outcome) || !place(places.service, service.toUtf8(), outcome))
        return outcome;
    const qsizetype before = outcome.changedFiles.size();
    if (!place(places.package, package.isNull() ? QByteArray() : package.toUtf8(), outcome))
        return outcome;
    if (outcome.changedFiles.size() > before)
        runCacheTool("update-mime-database", places.mime);
    // The entry comes last: once it names the types, they are known and so is the icon.
    if (place(places.entry, entry.toUtf8(), outcome) && outcome.changedFiles.contains(places.entry))
        runCacheTool("update-desktop-database", places.applications);
    return outcome;
}

Outcome unregister(const QString& bundleIdentifier)
{
    Outcome outcome;
    const Places places(bundleIdentifier);
    for (const QString& path : { places.entry, places.service, places.package, places.icon }) {
        if (!place(path, QByteArray(), outcome))
            return outcome;
    }

    if (outcome.changedFiles.contains(places.package)) {
        // With no package left, all that is left is the database made from none.
        if (QDir(places.mime + QStringLiteral("/packages")).isEmpty())
            QDir(places.mime).removeRecursively();
        else
            rebuildMimeDatabaseAfterRemoval(places.mime);
    }
    const QString mimeCache = places.applications + QStringLiteral("/mimeinfo.cache");
    if (outcome.changedFiles.contains(places.entry) && QFileInfo::exists(mimeCache)) {
        runCacheTool("update-desktop-database", places.applications);
        if (!holdsEntries(mimeCache))
            QFile::remove(mimeCache);
    }
    for (const QString& path : { places.entry, places.service, places.package, places.icon })
        removeEmptyFolders(path);
    return outcome;
}

QString registeredExecutable(const QString& bundleIdentifier)
{
    const QString entry = QString::fromUtf8(contentsOf(Places(bundleIdentifier).entry));
    return DesktopEntryFiles::desktopEntryValue(entry, QStringLiteral("TryExec"));
}

Outcome updateRegistrationAtLaunch(const Bundle& bundle)
{
    const QString bundlePath = bundle.bundlePath();
    for (const QString& folder :
        NSSearchPathForDirectoriesInDomains(NSApplicationDirectory, NSSystemDomainMask, true)) {
        if (!bundlePath.startsWith(folder + u'/'))
            continue;
        const QString registered = registeredExecutable(bundle.bundleIdentifier());
        if (!registered.isEmpty() && !QFileInfo(registered).isExecutable())
            return unregister(bundle.bundleIdentifier());
        return {};
    }
    return registerBundle(bundle);
}

}
