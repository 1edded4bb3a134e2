// SPDX-License-Identifier: GPL-3.0-or-later
#include "WebEnginePreviewContent.h"

#include <QElapsedTimer>
#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineView>
#include <cerrno>
#include <cstring>
#include <sys/resource.h>

namespace {

// The user's last click or key press on the page, taken by the first navigation that follows
// within a moment. The engine sees the same events after this filter, so the navigation a click
// starts always finds it.
class UserActivation : public QObject {
public:
    explicit UserActivation(QWidget* view)
        : QObject(view)
    {
        watch(view);
    }

    bool take()
    {
        const bool fresh = m_clock.isValid() && m_clock.elapsed() < FreshMilliseconds;
        m_clock.invalidate();
        return fresh;
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::ChildAdded:
            // The engine's widget that takes the input comes and goes with its process.
            if (auto* child = qobject_cast<QWidget*>(static_cast<QChildEvent*>(event)->child()))
                watch(child);
            break;
        case QEvent::MouseButtonRelease:
            if (static_cast<QMouseEvent*>(event)->button() & (Qt::LeftButton | Qt::MiddleButton))
                m_clock.start();
            break;
        case QEvent::KeyPress: {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)
                m_clock.start();
            break;
        }
        default:
            break;
        }
        return QObject::eventFilter(object, event);
    }

private:
    static constexpr qint64 FreshMilliseconds = 5000;

    void watch(QWidget* widget)
    {
        widget->installEventFilter(this);
        for (QWidget* child : widget->findChildren<QWidget*>())
            child->installEventFilter(this);
    }

    QElapsedTimer m_clock;
};

class ResourceRules : public QWebEngineUrlRequestInterceptor {
public:
    explicit ResourceRules(std::function<bool(const QUrl&)> allowed)
        : m_allowed(std::move(allowed))
    {
    }

    void interceptRequest(QWebEngineUrlRequestInfo& info) override
    {
        if (!m_allowed || !m_allowed(info.requestUrl()))
            info.block(true);
    }

private:
    std::function<bool(const QUrl&)> m_allowed;
};

// Asks the owner about every navigation, with what started it. A link that wants a new window is
// asked about in the same way and never gets one.
class PreviewPage : public QWebEnginePage {
public:
    PreviewPage(QWebEngineProfile* profile, const PreviewWebCallbacks& callbacks,
        UserActivation* activation, bool opensNothing, QObject* parent)
        : QWebEnginePage(profile, parent)
        , m_callbacks(callbacks)
        , m_activation(activation)
        , m_opensNothing(opensNothing)
    {
    }

protected:
    // What the page logs to its console is not for the user's terminal.
    void javaScriptConsoleMessage(
        JavaScriptConsoleMessageLevel, const QString&, int, const QString&) override
    {
    }

    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override
    {
        PreviewNavigationCause cause = PreviewNavigationCause::Page;
        if (type == NavigationTypeTyped && isMainFrame && !m_opensNothing)
            cause = PreviewNavigationCause::Load;
        else if (type == NavigationTypeLinkClicked && isMainFrame && m_activation
            && m_activation->take())
            cause = PreviewNavigationCause::Click;
        const bool accepted
            = m_callbacks.navigationRequested && m_callbacks.navigationRequested(url, cause);
        if (m_opensNothing)
            deleteLater();
        return accepted && !m_opensNothing;
    }

    QWebEnginePage* createWindow(WebWindowType) override
    {
        return new PreviewPage(profile(), m_callbacks, m_activation, true, this);
    }

private:
    PreviewWebCallbacks m_callbacks;
    QPointer<UserActivation> m_activation;
    bool m_opensNothing;
};

void limitProcessMemory(qint64 processId, qint64 bytes)
{
    // Data, not address space: the engine reserves far more address space than it ever uses.
    const rlimit limit { rlim_t(bytes), rlim_t(bytes) };
    if (processId > 0 && bytes > 0 && prlimit(pid_t(processId), RLIMIT_DATA, &limit, nullptr) != 0)
        qWarning("The preview page's process has no memory limit: %s", std::strerror(errno));
}

class WebEnginePreviewContent : public PreviewWebContent {
public:
    WebEnginePreviewContent(
        QWidget* parent, const PreviewWebCallbacks& callbacks, qint64 memoryLimit)
        // An off-the-record profile: previews leave no cookies, cache or history on disk.
        : m_profile(std::make_unique<QWebEngineProfile>())
        , m_rules(std::make_unique<ResourceRules>(callbacks.resourceRequested))
        , m_view(new QWebEngineView(parent))
        , m_activation(new UserActivation(m_view))
        , m_page(std::make_unique<PreviewPage>(
              m_profile.get(), callbacks, m_activation, false, nullptr))
    {
        m_profile->setUrlRequestInterceptor(m_rules.get());
        QWebEngineSettings* settings = m_page->settings();
        settings->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, false);
        // The pictures beside the page are files too; which files it reads, the rules decide.
        settings->setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls, true);
        settings->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, false);
        settings->setAttribute(QWebEngineSettings::JavascriptCanAccessClipboard, false);
        settings->setAttribute(QWebEngineSettings::AllowRunningInsecureContent, false);
        // Links of other schemes than the web's reach acceptNavigationRequest only when clicked.
        settings->setUnknownUrlSchemePolicy(
            QWebEngineSettings::AllowUnknownUrlSchemesFromUserInteraction);
        m_view->setPage(m_page.get());
        m_view->setContextMenuPolicy(Qt::NoContextMenu);
        // The engine does not always tell when its process changes: the limit is also looked
        // after at every step of a load, which a process only starts after it is known.
        const auto limit = [this, memoryLimit] {
            const qint64 processId = m_page->renderProcessPid();
            if (processId > 0 && processId != m_limitedProcess) {
                m_limitedProcess = processId;
                limitProcessMemory(processId, memoryLimit);
            }
        };
        QObject::connect(m_page.get(), &QWebEnginePage::renderProcessPidChanged, m_view, limit);
        QObject::connect(m_page.get(), &QWebEnginePage::loadStarted, m_view, limit);
        QObject::connect(m_page.get(), &QWebEnginePage::loadProgress, m_view, limit);
        if (callbacks.loadFinished)
            QObject::connect(
                m_page.get(), &QWebEnginePage::loadFinished, m_view, callbacks.loadFinished);
        if (callbacks.processEnded)
            QObject::connect(m_page.get(), &QWebEnginePage::renderProcessTerminated, m_view,
                [ended = callbacks.processEnded](
                    QWebEnginePage::RenderProcessTerminationStatus status, int) {
                    if (status != QWebEnginePage::NormalTerminationStatus)
                        ended();
                });
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
    std::unique_ptr<ResourceRules> m_rules;
    QPointer<QWebEngineView> m_view;
    UserActivation* m_activation;
    std::unique_ptr<QWebEnginePage> m_page;
    qint64 m_limitedProcess = 0;
};

}

std::unique_ptr<PreviewWebContent> makeWebEnginePreviewContent(
    QWidget* parent, PreviewWebCallbacks callbacks, qint64 memoryLimit)
{
    return std::make_unique<WebEnginePreviewContent>(parent, callbacks, memoryLimit);
}
