// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewWebContent.h"

#include <QString>
#include <QUrl>

// What a preview page may do when it navigates: its own pictures and pages load in place, the
// application's URL commands go to the application, web and mail addresses go to the desktop's
// programs, and nothing else happens at all. Only the owner's load and the user's clicks go
// anywhere: what the page starts itself (scripts, refreshes, forms, frames) is refused.
enum class PreviewLinkAction {
    Navigate, // a file: URL inside the page's own folder
    URLCommand, // the application's "tolvane" scheme
    OpenExternally, // http, https, mailto
    Refuse,
};

inline const QString PreviewURLCommandScheme = QStringLiteral("tolvane");

PreviewLinkAction previewLinkAction(const QUrl& url, const QString& pageFolder,
    PreviewNavigationCause cause = PreviewNavigationCause::Click);

// Whether the page may read a resource: a file inside its own folder (links resolved), or a data:
// URL, which carries its bytes. Nothing else, on this machine or any other.
bool previewMayRead(const QUrl& url, const QString& pageFolder);
