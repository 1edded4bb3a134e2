// SPDX-License-Identifier: GPL-3.0-or-later
#include "WebEnginePreviewFactory.h"

#include "WebEngineWelcomeContent.h"

#include <QPointer>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineView>

namespace {

// Asks the owner about every navigation; a link that wants a new window is asked about in the
// same way and never gets one.
class PreviewPage : public QWebEnginePage {
public:
    PreviewPage(QWebEngineProfile* profile, const PreviewWebCallbacks& callbacks, bool opensNothing,
        QObject* parent)
        : QWebEnginePage(profile, parent)
        , m_callbacks(callbacks)
        , m_opensNothing(opensNothing)
    {
    }

protected:
    // What the page logs to its console is not for the user's terminal.
    void javaScriptConsoleMessage(
        JavaScriptConsoleMessageLevel, const QString&, int, const QString&) override
    {
    }

    bool acceptNavigationRequest(const QUrl& url, NavigationType, bool) override
    {
        const bool accepted
            = m_callbacks.navigationRequested && m_callbacks.navigationRequested(url);
        if (m_opensNothing)
            deleteLater();
        return accepted && !m_opensNothing;
    }

    QWebEnginePage* createWindow(WebWindowType) override
    {
        return new PreviewPage(profile(), m_callbacks, true, this);
    }

private:
    PreviewWebCallbacks m_callbacks;
    bool m_opensNothing;
};

class WebEnginePreviewContent : public PreviewWebContent {
public:
    WebEnginePreviewContent(QWidget* parent, PreviewWebCallbacks callbacks)
        // An off-the-record profile: previews leave no cookies, cache or history on disk.
        : m_profile(std::make_unique<QWebEngineProfile>())
        , m_page(std::make_unique<PreviewPage>(m_profile.get(), callbacks, false, nullptr))
        , m_view(new QWebEngineView(parent))
    {
        QWebEnginePage* page = m_page.get();
        page->settings()->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, false);
        page->settings()->setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls, true);
        // Links of other schemes than the web's reach acceptNavigationRequest only when clicked,
        // so a page cannot send URL commands by itself.
        page->settings()->setUnknownUrlSchemePolicy(
            QWebEngineSettings::AllowUnknownUrlSchemesFromUserInteraction);
        m_view->setPage(page);
        m_view->setContextMenuPolicy(Qt::NoContextMenu);
        if (callbacks.loadFinished)
            QObject::connect(page, &QWebEnginePage::loadFinished, m_view, callbacks.loadFinished);
    }

    // The engine wants the view gone before its page, and the page before its profile.
    ~WebEnginePreviewContent() override
    {
        delete m_view.data();
        m_page.reset();
        m_profile.reset();
    }

    QWidget* widget() override { return m_view; }
    void load(const QUrl& page) override { m_view->load(page); }

private:
    std::unique_ptr<QWebEngineProfile> m_profile;
    std::unique_ptr<QWebEnginePage> m_page;
    QPointer<QWebEngineView> m_view;
};

}

std::unique_ptr<PreviewWebContent> WebEnginePreviewFactory::create(
    QWidget* parent, PreviewWebCallbacks callbacks)
{
    return std::make_unique<WebEnginePreviewContent>(parent, std::move(callbacks));
}

std::unique_ptr<WelcomeWebContent> WebEnginePreviewFactory::create(
    QWidget* parent, WelcomeWebCallbacks callbacks)
{
    return makeWebEngineWelcomeContent(parent, std::move(callbacks));
}
