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

// What started a navigation of the page.
enum class PreviewNavigationCause {
    Load, // the owner's load()
    Click, // the user's click (or Return or Space) on a link, a moment before
    Page, // anything else: a script, a refresh, a form, a frame
};

// What the web content tells its owner.
struct PreviewWebCallbacks {
    // Every navigation the page attempts, the first load included; true lets it happen in place.
    std::function<bool(const QUrl& url, PreviewNavigationCause cause)> navigationRequested;
    // Every resource the page reads (pictures, frames, scripts, fetches); false blocks it. Called
    // from inside the engine: it answers from what it holds, without calls into the view.
    std::function<bool(const QUrl& url)> resourceRequested;
    // The page finished loading, well or not.
    std::function<void(bool ok)> loadFinished;
    // The page's process ended before its time: it crashed or passed its memory limit.
    std::function<void()> processEnded;
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
    // memoryLimit: the bytes of data the page's process may hold (0: no limit of its own).
    virtual std::unique_ptr<PreviewWebContent> create(
        QWidget* parent, PreviewWebCallbacks callbacks, qint64 memoryLimit)
        = 0;
};

#define PreviewWebContentFactory_iid "app.tolvane.PreviewWebContentFactory/2"
Q_DECLARE_INTERFACE(PreviewWebContentFactory, PreviewWebContentFactory_iid)
