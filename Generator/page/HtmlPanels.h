// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewContent.h"
#include "VTPreviewSettings.h"

#include <QString>
#include <QStringList>
#include <vector>

// The pieces of the preview page: escaping, the application's command URLs and the panels.
namespace Preview::Html {

// Text for HTML content and attribute values: & < > " ' escaped.
QString escape(const QString& text);
// A query value: UTF-8, everything but the unreserved characters percent-escaped.
QString percentEscape(const QString& text);

QString revealImageUrl(const QString& path);
// tolvane://reveal/font?path=…&path1=…&path2=…; empty for no paths.
QString revealFontUrl(const QStringList& paths);
inline const QString SettingsUrl = QStringLiteral("tolvane://settings/quicklook");

// Each panel is a <section>; empty when there is nothing to show.
QString fontsPanel(const std::vector<PreviewFont>& fonts, bool wysiwyg);
QString linksPanel(const std::vector<PreviewLink>& links);
QString swatchesPanel(const std::vector<PreviewSwatchGroup>& groups, VTSwatchMode mode);

}
