// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewWebContent.h"

#include <QObject>

// The entry point of the tolvane_webview module: preview pages in Qt WebEngine.
class WebEnginePreviewFactory : public QObject, public PreviewWebContentFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID PreviewWebContentFactory_iid)
    Q_INTERFACES(PreviewWebContentFactory)
public:
    std::unique_ptr<PreviewWebContent> create(
        QWidget* parent, PreviewWebCallbacks callbacks) override;
};
