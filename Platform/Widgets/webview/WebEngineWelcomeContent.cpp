// SPDX-License-Identifier: GPL-3.0-or-later
#include "WebEngineWelcomeContent.h"

#include <QPointer>
#include <QWebEngineHttpRequest>
#include <QWebEngineLoadingInfo>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineView>

namespace {

// Puts every navigation the page attempts to its owner. The loads the owner asks for arrive as
// typed ones (there is no address field) and pass unasked.
class WelcomePage : public QWebEnginePage {
public:
    WelcomePage(QWebEngineProfile* profile, const WelcomeWebCallbacks& callbacks, QObject* parent)
        : QWebEnginePage(profile, parent)
        , m_callbacks(callbacks)
    {
    }

protected:
    // What the page logs to its console is not for the user's terminal.
    void javaScriptConsoleMessage(
        JavaScriptConsoleMessageLevel, const QString&, int, const QString&) override
    {
    }

    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool) override
    {
        if (type == NavigationTypeTyped)
            return true;
        return m_callbacks.navigationRequested && m_callbacks.navigationRequested(url);
    }

    // A link that wants a new window is decided like any other; what may load in place loads in
    // this page, and no window is ever made.
    QWebEnginePage* createWindow(WebWindowType) override
    {
        return new NewWindowRequest(this, m_callbacks);
    }

private:
    class NewWindowRequest : public QWebEnginePage {
    public:
        NewWindowRequest(WelcomePage* opener, const WelcomeWebCallbacks& callbacks)
            : QWebEnginePage(opener->profile(), opener)
            , m_opener(opener)
            , m_callbacks(callbacks)
        {
        }

    protected:
        bool acceptNavigationRequest(const QUrl& url, NavigationType, bool) override
        {
            if (m_callbacks.navigationRequested && m_callbacks.navigationRequested(url))
                m_opener->load(url);
            deleteLater();
            return false;
        }

    private:
        WelcomePage* m_opener;
        WelcomeWebCallbacks m_callbacks;
    };

    WelcomeWebCallbacks m_callbacks;
};

class WebEngineWelcomeContent : public WelcomeWebContent {
public:
    WebEngineWelcomeContent(QWidget* parent, const WelcomeWebCallbacks& callbacks)
        // Off the record: the welcome site's cookies last for the session only.
        : m_profile(std::make_unique<QWebEngineProfile>())
        , m_page(std::make_unique<WelcomePage>(m_profile.get(), callbacks, nullptr))
        , m_view(new QWebEngineView(parent))
    {
        QWebEnginePage* page = m_page.get();
        // A failed load shows our own page, never the engine's error page in between.
        page->settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
        page->settings()->setAttribute(QWebEngineSettings::AutoLoadIconsForPage, false);
        page->settings()->setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls, true);
        m_view->setPage(page);
        m_view->setContextMenuPolicy(Qt::NoContextMenu);
        if (callbacks.progressStarted)
            QObject::connect(page, &QWebEnginePage::loadStarted, m_view, callbacks.progressStarted);
        if (callbacks.progressFinished)
            QObject::connect(page, &QWebEnginePage::loadFinished, m_view,
                [finished = callbacks.progressFinished](bool) { finished(); });
        if (callbacks.provisionalLoadFailed)
            QObject::connect(page, &QWebEnginePage::loadingChanged, m_view,
                [failed = callbacks.provisionalLoadFailed](const QWebEngineLoadingInfo& loading) {
                    if (loading.status() == QWebEngineLoadingInfo::LoadFailedStatus
                        && loading.errorDomain() != QWebEngineLoadingInfo::HttpStatusCodeDomain)
                        failed();
                });
    }

    // The engine wants the view gone before its page, and the page before its profile.
    ~WebEngineWelcomeContent() override
    {
        delete m_view.data();
        m_page.reset();
        m_profile.reset();
    }

    QWidget* widget() override { return m_view; }

    void post(const QUrl& url, const QByteArray& body) override
    {
        QWebEngineHttpRequest request(url, QWebEngineHttpRequest::Post);
        request.setHeader("Content-Type", "application/x-www-form-urlencoded");
        request.setPostData(body);
        m_view->load(request);
    }

    void loadAlternateHTML(const QString& html, const QUrl& baseURL) override
    {
        m_view->setHtml(html, baseURL);
    }

private:
    std::unique_ptr<QWebEngineProfile> m_profile;
    std::unique_ptr<QWebEnginePage> m_page;
    QPointer<QWebEngineView> m_view;
};

}

std::unique_ptr<WelcomeWebContent> makeWebEngineWelcomeContent(
    QWidget* parent, WelcomeWebCallbacks callbacks)
{
    return std::make_unique<WebEngineWelcomeContent>(parent, callbacks);
}
