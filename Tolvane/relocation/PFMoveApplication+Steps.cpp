// SPDX-License-Identifier: GPL-3.0-or-later
// The steps of the move: where things are, the privileged and the plain copy, the Trash and the
// relaunch.
#include "Bundle.h"
#include "NSString+SymlinksAndAliases.h"
#include "PFMoveApplication.h"
#include "PrivilegedExecutor.h"
#include "SearchPaths.h"
#include "SystemLog.h"
#include "Workspace.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStorageInfo>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace PFMoveApplication {

namespace {

    // Where the desktop mounts images and removable media, and where an AppImage mounts itself.
    QStringList removableMediaFolders()
    {
        return { QStringLiteral("/media/"), QStringLiteral("/run/media/"),
            QDir::tempPath() + QStringLiteral("/.mount_") };
    }

    // Run as root with the source and the destination as $1 and $2, never pasted into the text.
    // The new copy is made in a folder beside the destination and only then takes the
    // destination's name; an installed copy is renamed out of the way just before, and back
    // when the new one cannot take its place. Whatever happens, the temporary folder goes.
    const QString installScript = QStringLiteral(R"sh(set -eu
source=$1
destination=$2
folder=${destination%/*}
mkdir -p -- "$folder"
work=$(mktemp -d -- "$folder/.install-XXXXXXXX")
trap 'rm -rf -- "$work"' EXIT
cp -pR -- "$source" "$work/new"
if [ -e "$destination" ] || [ -L "$destination" ]; then
    mv -T -- "$destination" "$work/old"
fi
if ! mv -T -- "$work/new" "$destination"; then
    if [ -e "$work/old" ] || [ -L "$work/old" ]; then
        mv -T -- "$work/old" "$destination"
    fi
    exit 1
fi
)sh");

    // Unmounts the volume five seconds on, when this process has long ended: through udisks, as
    // the desktop mounted it, else directly.
    const QString ejectScript = QStringLiteral(
        "sleep 5; udisksctl unmount --no-user-interaction --block-device \"$1\" >/dev/null 2>&1 "
        "|| umount -- \"$2\"");

    std::filesystem::path fileSystemPath(const QString& path)
    {
        return std::filesystem::path(QFile::encodeName(path).toStdString());
    }

}

bool IsInApplicationsFolder(const QString& path)
{
    for (const QString& folder :
        NSSearchPathForDirectoriesInDomains(NSApplicationDirectory, NSAllDomainsMask, true)) {
        if (path.startsWith(folder))
            return true;
    }
    return path.split(u'/').contains(QStringLiteral("Applications"));
}

QString PreferredInstallLocation(bool* isUserDirectory)
{
    if (isUserDirectory)
        *isUserDirectory = false;
    const QStringList folders
        = NSSearchPathForDirectoriesInDomains(NSApplicationDirectory, NSLocalDomainMask, true);
    const QString folder = folders.isEmpty() ? QString() : folders.last();
    // A folder that does not exist yet resolves to nothing; the install creates it.
    const QString resolved = SymlinksAndAliases::stringByResolvingSymlinksAndAliases(folder);
    return resolved.isNull() ? folder : resolved;
}

bool IsInDownloadsFolder(const QString& path)
{
    for (const QString& folder :
        NSSearchPathForDirectoriesInDomains(NSDownloadsDirectory, NSAllDomainsMask, true)) {
        if (path.startsWith(folder))
            return true;
    }
    return false;
}

bool IsLaunchedFromDMG()
{
    const QString bundlePath = Bundle::mainBundle().bundlePath();
    bool removable = false;
    for (const QString& folder : removableMediaFolders())
        removable |= bundlePath.startsWith(folder);
    return removable && access(QFile::encodeName(bundlePath), W_OK) != 0;
}

bool AuthorizedInstall(const QString& source, const QString& destination, bool* canceled)
{
    if (canceled)
        *canceled = false;
    if (!destination.endsWith(QStringLiteral(".app")) || source.trimmed().isEmpty()
        || destination.trimmed().isEmpty())
        return false;
    const PrivilegedExecutor* executor = PrivilegedExecutor::shared();
    if (!executor)
        return false;
    const PrivilegedExecutor::Result result = executor->run(QStringLiteral("/bin/sh"),
        { QStringLiteral("-c"), installScript, QStringLiteral("sh"), source, destination });
    if (canceled)
        *canceled = result.status == PrivilegedExecutor::Status::Canceled;
    return result.status == PrivilegedExecutor::Status::Succeeded;
}

bool Trash(const QString& path)
{
    if (NSWorkspace::sharedWorkspace().recycle(path))
        return true;
    NSLog(QStringLiteral("ERROR -- Could not trash '%1'").arg(path));
    return false;
}

bool CopyBundle(const QString& source, const QString& destination)
{
    const std::filesystem::path to = fileSystemPath(destination);
    std::error_code error;
    const bool taken = std::filesystem::symlink_status(to, error).type()
        != std::filesystem::file_type::not_found;
    error.clear();
    // Like the file manager of the original platform: an existing destination is an error,
    // not something to copy into.
    if (taken)
        error = std::make_error_code(std::errc::file_exists);
    else
        std::filesystem::copy(fileSystemPath(source), to,
            std::filesystem::copy_options::recursive | std::filesystem::copy_options::copy_symlinks,
            error);
    if (!error)
        return true;
    NSLog(QStringLiteral("ERROR -- Could not copy '%1' to '%2' (%3)")
              .arg(source, destination, QString::fromLocal8Bit(error.message())));
    if (!taken) {
        std::error_code ignored;
        std::filesystem::remove_all(to, ignored);
    }
    return false;
}

void Relaunch(const QString& destination)
{
    NSWorkspace::sharedWorkspace().launchApplicationAfterProcessExits(
        destination, QCoreApplication::applicationPid());
    if (IsLaunchedFromDMG()) {
        const QStorageInfo volume(Bundle::mainBundle().bundlePath());
        QProcess::startDetached(QStringLiteral("/bin/sh"),
            { QStringLiteral("-c"), ejectScript, QStringLiteral("sh"),
                QString::fromLocal8Bit(volume.device()), volume.rootPath() });
    }
    std::exit(0);
}

}
