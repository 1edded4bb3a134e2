// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>
#include <QtPlugin>
#include <functional>
#include <memory>

class QWidget;

// The seam between the preview view and the web engine, which lives in a module of its own
// (tolvane_webview) so that only a window that shows a page loads it. Header only: the module
// and the view share nothing else.

// What the web content tells its owner.
struct PreviewWebCallbacks {
    // Every navigation the page attempts, the first load included; true lets it happen in place.
    std::function<bool(const QUrl& url)> navigationRequested;
    // The page finished loading, well or not.
    std::function<void(bool ok)> loadFinished;
};

class PreviewWebContent {
public:
    virtual ~PreviewWebContent() = default;
    // The widget that shows the page; owned by this object's parent widget.
    virtual QWidget* widget() = 0;
    virtual void load(const QUrl& page) = 0;
};

class PreviewWebContentFactory {
public:
    virtual ~PreviewWebContentFactory() = default;
    virtual std::unique_ptr<PreviewWebContent> create(
        QWidget* parent, PreviewWebCallbacks callbacks)
        = 0;
};

#define PreviewWebContentFactory_iid "app.tolvane.PreviewWebContentFactory/1"
Q_DECLARE_INTERFACE(PreviewWebContentFactory, PreviewWebContentFactory_iid)
