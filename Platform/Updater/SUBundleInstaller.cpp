// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUBundleInstaller.h"

#include "Bundle.h"
#include "SUUnarchiver.h"
#include "SUVersionComparison.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

const QString stagingMarker = QStringLiteral(".update-");
// Where the old copy waits when the file system cannot swap in one rename.
const QString previousName = QStringLiteral("previous");
const QString rejectedName = QStringLiteral("rejected");

QString systemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

QString stagingPrefix(const QString& target)
{
    const QFileInfo info(target);
    return info.absolutePath() + QStringLiteral("/.") + info.fileName() + stagingMarker;
}

// Opens a folder and locks it for this process; -1 when another process holds it.
int lockFolder(const QString& folder)
{
    const int fd
        = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return -1;
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
}

bool renamePath(const QString& from, const QString& to)
{
    return ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

QString bundleVersion(const QVariantMap& info)
{
    const QString version = info.value(QStringLiteral("CFBundleVersion")).toString();
    return version.isEmpty() ? info.value(QStringLiteral("CFBundleShortVersionString")).toString()
                             : version;
}

}

SUBundleInstaller::SUBundleInstaller(QString targetBundle)
    : m_target(QFileInfo(targetBundle).absoluteFilePath())
{
}

SUBundleInstaller::~SUBundleInstaller()
{
    // Should the rollback fail, the new copy stays installed, which is whole too.
    if (m_state == State::Installed)
        rollback(nullptr);
    discard();
}

bool SUBundleInstaller::prepare(QByteArrayView archive, QString* error)
{
    QByteArray pattern = QFile::encodeName(stagingPrefix(m_target)) + "XXXXXX";
    if (!::mkdtemp(pattern.data())) {
        if (error)
            *error = QStringLiteral("No folder could be made beside %1: %2")
                         .arg(m_target, systemError());
        return false;
    }
    m_stagingFolder = QFile::decodeName(pattern);
    m_stagingLock = lockFolder(m_stagingFolder);
    if (!SUUnarchiver::unpack(archive, m_stagingFolder, error) || !checkPreparedBundle(error)) {
        discard();
        return false;
    }
    m_state = State::Prepared;
    return true;
}

bool SUBundleInstaller::checkPreparedBundle(QString* error)
{
    const auto fail = [error](const QString& message) {
        if (error)
            *error = message;
        return false;
    };
    QStringList bundles;
    for (const QFileInfo& entry :
        QDir(m_stagingFolder)
            .entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
        if (entry.suffix() == QLatin1String("app") && entry.isDir() && !entry.isSymLink())
            bundles.append(entry.absoluteFilePath());
    }
    if (bundles.size() != 1)
        return fail(bundles.isEmpty()
                ? QStringLiteral("The archive holds no application.")
                : QStringLiteral("The archive holds %1 applications instead of one.")
                      .arg(bundles.size()));
    m_newBundle = bundles.constFirst();

    const auto installed = Bundle::bundleWithPath(m_target);
    const auto offered = Bundle::bundleWithPath(m_newBundle);
    const QVariantMap installedInfo = installed ? installed->infoDictionary() : QVariantMap();
    const QVariantMap offeredInfo = offered->infoDictionary();
    const QString identifier = installedInfo.value(QStringLiteral("CFBundleIdentifier")).toString();
    const QString offeredIdentifier
        = offeredInfo.value(QStringLiteral("CFBundleIdentifier")).toString();
    if (identifier.isEmpty() || offeredIdentifier != identifier)
        return fail(QStringLiteral("The archive holds another application (%1), not %2.")
                        .arg(offeredIdentifier.isEmpty() ? QStringLiteral("no identifier")
                                                         : offeredIdentifier,
                            identifier));
    m_preparedVersion = bundleVersion(offeredInfo);
    const QString installedVersion = bundleVersion(installedInfo);
    if (SUVersionComparison::compareVersions(m_preparedVersion, installedVersion) <= 0)
        return fail(QStringLiteral("The archive holds version %1, which is not newer than the "
                                   "installed version %2.")
                        .arg(m_preparedVersion, installedVersion));
    if (!QFileInfo(offered->executablePath()).isExecutable())
        return fail(QStringLiteral("The application in the archive has no executable."));
    return true;
}

bool SUBundleInstaller::install(QString* error)
{
    if (m_state != State::Prepared) {
        if (error)
            *error = QStringLiteral("No update is prepared.");
        return false;
    }
    // Another installation (a package manager, say) may have replaced the bundle while this update
    // waited for the application to quit.
    const auto installed = Bundle::bundleWithPath(m_target);
    const QString installedVersion
        = installed ? bundleVersion(installed->infoDictionary()) : QString();
    if (!installed
        || SUVersionComparison::compareVersions(m_preparedVersion, installedVersion) <= 0) {
        if (error)
            *error = installed ? QStringLiteral("%1 was replaced by version %2 meanwhile.")
                                     .arg(m_target, installedVersion)
                               : QStringLiteral("%1 is gone.").arg(m_target);
        return false;
    }
    // The unpacked files reach the disk before the swap makes them the application.
    ::syncfs(m_stagingLock);
    if (!swap(m_newBundle, m_stagingFolder + QLatin1Char('/') + previousName, error))
        return false;
    m_state = State::Installed;
    return true;
}

bool SUBundleInstaller::swap(const QString& incoming, const QString& backup, QString* error)
{
    const QByteArray from = QFile::encodeName(incoming);
    const QByteArray to = QFile::encodeName(m_target);
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_EXCHANGE) == 0) {
        m_oldCopy = incoming;
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) {
        if (error)
            *error = QStringLiteral("%1 could not be replaced: %2").arg(m_target, systemError());
        return false;
    }
    if (!renamePath(m_target, backup)) {
        if (error)
            *error = QStringLiteral("%1 could not be moved aside: %2").arg(m_target, systemError());
        return false;
    }
    if (!renamePath(incoming, m_target)) {
        const QString reason = systemError();
        renamePath(backup, m_target);
        if (error)
            *error = QStringLiteral("%1 could not be replaced: %2").arg(m_target, reason);
        return false;
    }
    m_oldCopy = backup;
    return true;
}

bool SUBundleInstaller::commit(QString* error)
{
    if (m_state != State::Installed) {
        if (error)
            *error = QStringLiteral("No update is installed.");
        return false;
    }
    m_state = State::Done;
    discard();
    return true;
}

bool SUBundleInstaller::rollback(QString* error)
{
    if (m_state == State::Installed) {
        if (!swap(m_oldCopy, m_stagingFolder + QLatin1Char('/') + rejectedName, error))
            return false;
        m_state = State::Done;
    }
    discard();
    return true;
}

void SUBundleInstaller::discard()
{
    if (!m_stagingFolder.isEmpty()) {
        // A swap that failed half-way and could not be undone left the old copy here.
        const QString previous = m_stagingFolder + QLatin1Char('/') + previousName;
        if (!QFileInfo::exists(m_target) && QFileInfo(previous).isDir())
            renamePath(previous, m_target);
        QDir(m_stagingFolder).removeRecursively();
    }
    m_stagingFolder.clear();
    if (m_stagingLock >= 0)
        ::close(m_stagingLock);
    m_stagingLock = -1;
}

void SUBundleInstaller::removeLeftovers(const QString& targetBundle)
{
    const QString target = QFileInfo(targetBundle).absoluteFilePath();
    const QFileInfo prefix(stagingPrefix(target));
    const QStringList leftovers = QDir(prefix.absolutePath())
                                      .entryList({ prefix.fileName() + QLatin1Char('*') },
                                          QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString& name : leftovers) {
        const QString folder = prefix.absolutePath() + QLatin1Char('/') + name;
        const int lock = lockFolder(folder);
        if (lock < 0)
            continue; // an installer is at work in it
        const QString previous = folder + QLatin1Char('/') + previousName;
        if (!QFileInfo::exists(target) && QFileInfo(previous).isDir())
            renamePath(previous, target);
        QDir(folder).removeRecursively();
        ::close(lock);
    }
}
