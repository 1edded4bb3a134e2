// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <QtPlugin>
#include <functional>
#include <memory>

class QWidget;

// The seam between the welcome screen and the web engine, which lives in the module that the
// preview pages load on demand (PreviewWebModule.h). Header only.

// What the web content tells its owner.
struct WelcomeWebCallbacks {
    // Every navigation the page attempts by itself, in any frame: a link, a form, a script, a
    // redirect, a link that asks for a new window. True lets it load in place. The loads asked for
    // with post() and loadAlternateHTML() are not asked about.
    std::function<bool(const QUrl& url)> navigationRequested;
    // The page began to load, and finished loading (well or not).
    std::function<void()> progressStarted;
    std::function<void()> progressFinished;
    // A load of the page failed before anything of it arrived: no connection, an unknown host, a
    // refused connection. An answer with an HTTP error status is a page that arrived.
    std::function<void()> provisionalLoadFailed;
};

class WelcomeWebContent {
public:
    virtual ~WelcomeWebContent() = default;
    // The widget that shows the page; owned by this object's parent widget.
    virtual QWidget* widget() = 0;
    // Sends the body as it is, as a form (application/x-www-form-urlencoded).
    virtual void post(const QUrl& url, const QByteArray& body) = 0;
    // Shows the HTML in place of a page that could not be reached; relative links resolve
    // against the base URL.
    virtual void loadAlternateHTML(const QString& html, const QUrl& baseURL) = 0;
};

class WelcomeWebContentFactory {
public:
    virtual ~WelcomeWebContentFactory() = default;
    virtual std::unique_ptr<WelcomeWebContent> create(
        QWidget* parent, WelcomeWebCallbacks callbacks)
        = 0;
};

#define WelcomeWebContentFactory_iid "app.tolvane.WelcomeWebContentFactory/1"
Q_DECLARE_INTERFACE(WelcomeWebContentFactory, WelcomeWebContentFactory_iid)
