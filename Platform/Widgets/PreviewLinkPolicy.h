// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QUrl>

// What a preview page may do when it navigates: its own pictures and pages load in place, the
// application's URL commands go to the application, web and mail addresses go to the desktop's
// programs, and nothing else happens at all.
enum class PreviewLinkAction {
    Navigate, // a file: URL inside the page's own folder
    URLCommand, // the application's "tolvane" scheme
    OpenExternally, // http, https, mailto
    Refuse,
};

inline const QString PreviewURLCommandScheme = QStringLiteral("tolvane");

PreviewLinkAction previewLinkAction(const QUrl& url, const QString& pageFolder);
