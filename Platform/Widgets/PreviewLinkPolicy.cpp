// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewLinkPolicy.h"

#include <QDir>
#include <QFileInfo>

namespace {

// Whether the file lies in the folder or below it, once "..", "." and symbolic links are gone.
bool isInside(const QString& file, const QString& folder)
{
    const QString root = QFileInfo(folder).canonicalFilePath();
    if (root.isEmpty())
        return false;
    const QFileInfo info(file);
    QString path = info.canonicalFilePath();
    // A page may link to a file that does not exist; judge it by its folder.
    if (path.isEmpty()) {
        const QString parent = QFileInfo(info.absolutePath()).canonicalFilePath();
        path = parent.isEmpty() ? QDir::cleanPath(info.absoluteFilePath())
                                : parent + QLatin1Char('/') + info.fileName();
    }
    return path == root || path.startsWith(root + QLatin1Char('/'));
}

}

bool previewMayRead(const QUrl& url, const QString& pageFolder)
{
    if (url.scheme().compare(QLatin1String("data"), Qt::CaseInsensitive) == 0)
        return true;
    return url.isValid() && url.isLocalFile() && url.host().isEmpty() && !pageFolder.isEmpty()
        && isInside(url.toLocalFile(), pageFolder);
}

PreviewLinkAction previewLinkAction(
    const QUrl& url, const QString& pageFolder, PreviewNavigationCause cause)
{
    if (!url.isValid() || cause == PreviewNavigationCause::Page)
        return PreviewLinkAction::Refuse;
    const QString scheme = url.scheme().toLower();
    if (scheme == QLatin1String("file"))
        return previewMayRead(url, pageFolder) ? PreviewLinkAction::Navigate
                                               : PreviewLinkAction::Refuse;
    if (cause == PreviewNavigationCause::Load)
        return PreviewLinkAction::Refuse;
    if (scheme == PreviewURLCommandScheme)
        return PreviewLinkAction::URLCommand;
    if (scheme == QLatin1String("http") || scheme == QLatin1String("https")
        || scheme == QLatin1String("mailto"))
        return PreviewLinkAction::OpenExternally;
    return PreviewLinkAction::Refuse;
}
