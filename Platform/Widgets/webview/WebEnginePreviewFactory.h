// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewWebContent.h"
#include "WelcomeWebContent.h"

#include <QObject>

// The entry point of the tolvane_webview module: preview pages and the welcome page in Qt
// WebEngine.
class WebEnginePreviewFactory : public QObject,
                                public PreviewWebContentFactory,
                                public WelcomeWebContentFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID PreviewWebContentFactory_iid)
    Q_INTERFACES(PreviewWebContentFactory WelcomeWebContentFactory)
public:
    std::unique_ptr<PreviewWebContent> create(
        QWidget* parent, PreviewWebCallbacks callbacks, qint64 memoryLimit) override;
    std::unique_ptr<WelcomeWebContent> create(
        QWidget* parent, WelcomeWebCallbacks callbacks) override;
};
