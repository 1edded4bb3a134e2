// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>
#include <QVariant>
#include <QVariantMap>
#include <QWidget>
#include <cstdint>
#include <memory>

class QCheckBox;
class QProgressBar;
class QXWelcomeScreen;
class WelcomeWebContent;
namespace Ui {
class QXWelcomeScreen;
}

// What the welcome screen tells, and asks, the object that has it shown.
class QXWelcomeScreenDelegate {
public:
    virtual ~QXWelcomeScreenDelegate() = default;
    // A fresh panel has started loading its page and is about to come up.
    virtual void welcomeScreenWillShow(QXWelcomeScreen*) { }
    // The panel is about to close, by its close box or by close().
    virtual void welcomeScreenWillClose(QXWelcomeScreen*) { }
    // A short code for the form's "type" field; a null string leaves the field out.
    virtual QString typeForWelcomeScreen(QXWelcomeScreen* welcomeScreen) = 0;
};

// The user defaults key of the show-at-startup entries: a dictionary from welcome-screen version
// ("QXWelcomeScreenVersion" of the bundle) to whether the panel comes up at start for it.
inline const QString QXWelcomeWindowShowAtStartupEntries
    = QStringLiteral("Show At Startup Entries");

// The welcome panel: the maker's welcome page ("QXWelcomeScreenURL" of the bundle), requested with
// a POST form that describes the application, the system and how the showing came about. Links to
// the welcome site stay in the panel, others open in the browser, and "network-diagnostics:" opens
// the desktop's network settings. When the page cannot be reached, the page that comes with the
// application (Resources/QXWelcomeScreen.html) shows instead. The web engine is loaded when the
// first panel is built. Main thread only.
class QXWelcomeScreen : public QObject {
    Q_OBJECT
public:
    // How a showing came about; the form's "show" field.
    enum ShowRef : std::int32_t { First = 0, Auto = 1, Manual = 2 };

    // The one instance, made on first use; a delegate given replaces the one it has.
    static QXWelcomeScreen* sharedWelcomeScreenWithDelegate(QXWelcomeScreenDelegate* delegate);
    // Shows the panel, as "first" when this welcome-screen version has no entry yet, else as
    // "auto" at start-up or "manual" otherwise. At start-up only when the connection test passes.
    // Always false.
    static bool displayIfPossibleWithDelegate(QXWelcomeScreenDelegate* delegate, bool forStartup);
    // This version's entry, true when there is none.
    static bool showAtStartup();
    static void setShowAtStartup(bool flag);
    // This version's entry: a boolean, or an invalid value when there is none.
    static QVariant showAtStartupEntry();
    static QString welcomeScreenVersion();
    static QString appID();
    // Whether "QXWelcomeScreenConnectionTestName" of the bundle is reachable now. Blocks while
    // the name resolves (a limited time, with the event loop running).
    static bool internetConnectionAvailable();

    QXWelcomeScreen();
    explicit QXWelcomeScreen(QXWelcomeScreenDelegate* delegate);
    ~QXWelcomeScreen() override;

    QXWelcomeScreenDelegate* delegate() const { return m_delegate; }
    void setDelegate(QXWelcomeScreenDelegate* delegate) { m_delegate = delegate; }
    // Absent until first shown and again after close().
    QWidget* panel() const { return m_panel; }
    // The page; absent when there is no panel or the web engine could not be loaded.
    WelcomeWebContent* webView() const { return m_webView.get(); }
    QProgressBar* spinner() const;
    QCheckBox* showAtStartupCheck() const;
    std::int32_t showRef() const { return m_showRef; }

    // The request's form fields: app, appid, type, appver, osver, arch, archbits, lang, show.
    QVariantMap appInfo() const;
    // Shows the panel, building it and sending the request when there is none; an existing panel
    // only comes to the front. Does nothing without a delegate.
    void showWithRef(std::int32_t ref);
    // "first" without an entry, else "manual" with a sender and "auto" without.
    void show(const QObject* sender);
    // Closes the panel and drops it: the next showing builds a fresh one.
    void close();
    // Stores the check box's state as this version's entry.
    void updateShowAtStartup();

    // The navigation rule: true lets the page load in the panel.
    bool decidePolicyForNavigation(const QUrl& url);
    // The page could not be reached: the page that comes with the application shows instead.
    void didFailProvisionalLoad();
    void webViewStartedLoading();
    void webViewFinishedLoading();
    // The panel is closing, either way.
    void windowWillClose();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildPanel();
    void loadWelcomePage();
    void placePanel();
    void dropPanel();

    QXWelcomeScreenDelegate* m_delegate = nullptr;
    std::unique_ptr<Ui::QXWelcomeScreen> m_ui;
    QPointer<QWidget> m_panel;
    std::unique_ptr<WelcomeWebContent> m_webView;
    std::int32_t m_showRef = First;
};
