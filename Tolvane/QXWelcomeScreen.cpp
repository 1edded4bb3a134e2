// SPDX-License-Identifier: GPL-3.0-or-later
#include "QXWelcomeScreen.h"

#include "Bundle.h"
#include "NetworkDiagnostics.h"
#include "PreviewWebModule.h"
#include "ProcessInfo.h"
#include "QXVersionInfo.h"
#include "SCNetworkReachability.h"
#include "SystemLog.h"
#include "UserDefaults.h"
#include "WelcomeWebContent.h"
#include "Workspace.h"
#include "ui_QXWelcomeScreen.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QShortcut>
#include <mutex>

namespace {

QVariant infoValue(const QString& key)
{
    return Bundle::mainBundle().objectForInfoDictionaryKey(key);
}

QString showText(std::int32_t ref)
{
    switch (ref) {
    case QXWelcomeScreen::First:
        return QStringLiteral("first");
    case QXWelcomeScreen::Auto:
        return QStringLiteral("auto");
    case QXWelcomeScreen::Manual:
        return QStringLiteral("manual");
    default:
        return QStringLiteral("unknown");
    }
}

// "64" when the processor can run 64-bit code, asked of the kernel by the names that answer it.
QString architectureBits()
{
    std::int32_t value = 0;
    std::size_t size = sizeof value;
    int result = sysctlbyname("hw.cpu64bit_capable", &value, &size, nullptr, 0);
    for (const char* fallback : { "hw.optional.x86_64", "hw.optional.64bitops" }) {
        if (result == 0)
            break;
        size = sizeof value;
        result = sysctlbyname(fallback, &value, &size, nullptr, 0);
    }
    return result == 0 && value == 1 ? QStringLiteral("64") : QStringLiteral("32");
}

// Addresses that name nothing outside the page itself.
bool staysInPage(const QUrl& url)
{
    const QString scheme = url.scheme();
    return scheme == QLatin1String("about") || scheme == QLatin1String("data")
        || scheme == QLatin1String("blob");
}

}

QXWelcomeScreen* QXWelcomeScreen::sharedWelcomeScreenWithDelegate(QXWelcomeScreenDelegate* delegate)
{
    static std::once_flag once;
    static QXWelcomeScreen* _sharedWelcomeScreen = nullptr;
    std::call_once(once, [] { _sharedWelcomeScreen = new QXWelcomeScreen(); });
    if (delegate)
        _sharedWelcomeScreen->setDelegate(delegate);
    return _sharedWelcomeScreen;
}

bool QXWelcomeScreen::displayIfPossibleWithDelegate(
    QXWelcomeScreenDelegate* delegate, bool forStartup)
{
    if (forStartup && !internetConnectionAvailable())
        return false;
    QXWelcomeScreen* screen = sharedWelcomeScreenWithDelegate(delegate);
    std::int32_t ref = forStartup ? Auto : Manual;
    if (!showAtStartupEntry().isValid())
        ref = First;
    screen->showWithRef(ref);
    return false;
}

bool QXWelcomeScreen::showAtStartup()
{
    const QVariant entry = showAtStartupEntry();
    return !entry.isValid() || entry.toBool();
}

void QXWelcomeScreen::setShowAtStartup(bool flag)
{
    const QVariant entry = showAtStartupEntry();
    if (entry.isValid() && entry.toBool() == flag)
        return;
    // Without a version there is no key to keep the entry under.
    const QString version = welcomeScreenVersion();
    if (version.isNull())
        return;
    UserDefaults& defaults = UserDefaults::standardUserDefaults();
    QVariantMap entries = defaults.dictionaryForKey(QXWelcomeWindowShowAtStartupEntries);
    entries.insert(version, flag);
    defaults.setObject(entries, QXWelcomeWindowShowAtStartupEntries);
}

QVariant QXWelcomeScreen::showAtStartupEntry()
{
    const QString version = welcomeScreenVersion();
    if (version.isNull())
        return {};
    return UserDefaults::standardUserDefaults()
        .dictionaryForKey(QXWelcomeWindowShowAtStartupEntries)
        .value(version);
}

QString QXWelcomeScreen::welcomeScreenVersion()
{
    return infoValue(QStringLiteral("QXWelcomeScreenVersion")).toString();
}

QString QXWelcomeScreen::appID() { return infoValue(QStringLiteral("QXAppID")).toString(); }

bool QXWelcomeScreen::internetConnectionAvailable()
{
    const QVariant name = infoValue(QStringLiteral("QXWelcomeScreenConnectionTestName"));
    const QByteArray utf8 = name.toString().toUtf8();
    const SCNetworkReachabilityRef target
        = SCNetworkReachabilityCreateWithName(name.isValid() ? utf8.constData() : nullptr);
    SCNetworkReachabilityFlags flags = 0;
    SCNetworkReachabilityGetFlags(target.get(), &flags);
    return (flags & kSCNetworkReachabilityFlagsReachable)
        && !(flags & kSCNetworkReachabilityFlagsConnectionRequired);
}

QXWelcomeScreen::QXWelcomeScreen()
{
    // The web engine must let go of its page before the application object goes.
    connect(qApp, &QCoreApplication::aboutToQuit, this, &QXWelcomeScreen::dropPanel);
}

QXWelcomeScreen::QXWelcomeScreen(QXWelcomeScreenDelegate* delegate)
    : QXWelcomeScreen()
{
    setDelegate(delegate);
}

QXWelcomeScreen::~QXWelcomeScreen() { dropPanel(); }

QProgressBar* QXWelcomeScreen::spinner() const { return m_panel ? m_ui->spinner : nullptr; }

QCheckBox* QXWelcomeScreen::showAtStartupCheck() const
{
    return m_panel ? m_ui->showAtStartupCheck : nullptr;
}

QVariantMap QXWelcomeScreen::appInfo() const
{
    QVariantMap info;
    const auto add = [&info](const char* field, const QVariant& value) {
        if (value.isValid() && !(value.typeId() == QMetaType::QString && value.toString().isNull()))
            info.insert(QLatin1String(field), value);
    };
    add("app", Bundle::mainBundle().infoDictionary().value(QStringLiteral("CFBundleName")));
    add("appid", infoValue(QStringLiteral("QXAppID")));
    add("type",
        m_delegate ? m_delegate->typeForWelcomeScreen(const_cast<QXWelcomeScreen*>(this))
                   : QString());
    add("appver", infoValue(QStringLiteral("CFBundleShortVersionString")));
    add("osver", NSStringFromQXVersionIncludingZeroPatch(true, QXVersionCurrentOperatingSystem()));
    add("arch", QStringLiteral("Intel"));
    add("archbits", architectureBits());
    add("lang",
        UserDefaults::standardUserDefaults()
            .arrayForKey(QStringLiteral("AppleLanguages"))
            .value(0));
    add("show", showText(m_showRef));
    return info;
}

void QXWelcomeScreen::showWithRef(std::int32_t ref)
{
    if (!m_delegate)
        return;
    m_showRef = ref;
    if (!m_panel) {
        buildPanel();
        loadWelcomePage();
        m_delegate->welcomeScreenWillShow(this);
        placePanel();
    }
    m_panel->show();
    m_panel->raise();
    m_panel->activateWindow();
}

void QXWelcomeScreen::show(const QObject* sender)
{
    std::int32_t ref = sender ? Manual : Auto;
    if (!showAtStartupEntry().isValid())
        ref = First;
    showWithRef(ref);
}

void QXWelcomeScreen::close()
{
    if (!m_panel)
        return;
    m_panel->close();
    dropPanel();
}

void QXWelcomeScreen::updateShowAtStartup()
{
    // A check box that is not there counts as off.
    setShowAtStartup(showAtStartupCheck() && showAtStartupCheck()->isChecked());
}

bool QXWelcomeScreen::decidePolicyForNavigation(const QUrl& url)
{
    if (url.toString(QUrl::FullyEncoded).startsWith(QLatin1String("network-diagnostics:"))) {
        openNetworkDiagnostics();
        return false;
    }
    const QUrl welcomePage(infoValue(QStringLiteral("QXWelcomeScreenURL")).toString());
    if (url.host() == welcomePage.host() || staysInPage(url))
        return true;
    NSWorkspace::sharedWorkspace().openURL(url);
    return false;
}

void QXWelcomeScreen::didFailProvisionalLoad()
{
    if (!m_webView)
        return;
    const QString path = Bundle::mainBundle().pathForResource(
        QStringLiteral("QXWelcomeScreen"), QStringLiteral("html"));
    QFile file(path);
    const QString html
        = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    m_webView->loadAlternateHTML(html, QUrl::fromLocalFile(path));
}

void QXWelcomeScreen::webViewStartedLoading()
{
    if (spinner())
        spinner()->show();
}

void QXWelcomeScreen::webViewFinishedLoading()
{
    if (spinner())
        spinner()->hide();
}

void QXWelcomeScreen::windowWillClose()
{
    if (m_delegate)
        m_delegate->welcomeScreenWillClose(this);
}

bool QXWelcomeScreen::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_panel && event->type() == QEvent::Close)
        windowWillClose();
    return QObject::eventFilter(watched, event);
}

void QXWelcomeScreen::buildPanel()
{
    m_ui = std::make_unique<Ui::QXWelcomeScreen>();
    // A utility window, kept above the application's other windows. Closing it may still end an
    // application that shows nothing else, as closing a window does.
    m_panel = new QWidget(nullptr, Qt::Tool);
    m_ui->setupUi(m_panel);
    m_panel->setAttribute(Qt::WA_QuitOnClose, true);
    m_panel->installEventFilter(this);
    m_ui->bottomBand->setFixedHeight(52);
    m_panel->setWindowTitle(m_panel->windowTitle().arg(Bundle::mainBundle()
                                                           .localizedInfoDictionary()
                                                           .value(QStringLiteral("CFBundleName"))
                                                           .toString()));
    m_ui->showAtStartupCheck->setChecked(showAtStartup());
    connect(
        m_ui->showAtStartupCheck, &QCheckBox::clicked, this, &QXWelcomeScreen::updateShowAtStartup);
    connect(m_ui->closeButton, &QPushButton::clicked, this, &QXWelcomeScreen::close);
    connect(new QShortcut(QKeySequence::Cancel, m_panel), &QShortcut::activated, this,
        &QXWelcomeScreen::close);
    QSizePolicy keepsItsPlace = m_ui->spinner->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    m_ui->spinner->setSizePolicy(keepsItsPlace);
    m_ui->spinner->hide();

    QString error;
    WelcomeWebContentFactory* factory = PreviewWebModule::welcomeFactory(&error);
    if (!factory) {
        NSLog(QStringLiteral("ERROR -- the welcome page cannot be shown: %1 (%2)")
                  .arg(error, PreviewWebModule::path()));
        return;
    }
    m_webView = factory->create(m_ui->webViewArea,
        { [this](const QUrl& url) { return decidePolicyForNavigation(url); },
            [this] { webViewStartedLoading(); }, [this] { webViewFinishedLoading(); },
            [this] { didFailProvisionalLoad(); } });
    m_ui->webViewLayout->addWidget(m_webView->widget());
}

void QXWelcomeScreen::loadWelcomePage()
{
    // The web content lets the loads it is asked for pass without the navigation rule, which
    // governs only what the page does by itself.
    const QUrl url(infoValue(QStringLiteral("QXWelcomeScreenURL")).toString());
    QString body;
    const QVariantMap fields = appInfo();
    for (auto it = fields.begin(); it != fields.end(); ++it) {
        if (!body.isEmpty())
            body += QLatin1Char('&');
        // Sent as they are: the server reads them unescaped.
        body += it.key() + QLatin1Char('=') + it.value().toString();
    }
    // The field "show" was taken above; from now on this version has an entry.
    updateShowAtStartup();
    if (m_webView)
        m_webView->post(url, body.toUtf8());
}

void QXWelcomeScreen::placePanel()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QRectF frame = screen ? QRectF(screen->geometry()) : QRectF();
    const QSizeF size = m_panel->size();
    // Centred across; its middle a tenth of the screen's height above the screen's middle.
    const double x = frame.x() + 0.5 * frame.width() - size.width() / 2;
    const double y = frame.y() + 0.5 * frame.height() - 0.1 * frame.height() - size.height() / 2;
    m_panel->move(qRound(x), qRound(y));
}

void QXWelcomeScreen::dropPanel()
{
    // The page goes before the panel that holds it.
    m_webView.reset();
    if (m_panel)
        m_panel->deleteLater();
    m_panel = nullptr;
    m_ui.reset();
}
