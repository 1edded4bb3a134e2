// SPDX-License-Identifier: GPL-3.0-or-later
#include "TLApplication.h"

#include "AppleEventManager.h"
#include "ApplicationInstance.h"
#include "Bundle.h"
#include "DesktopRegistration.h"
#include "DrawnIconStyle.h"
#include "Localization.h"
#include "NSAlert.h"
#include "SUStandardUserDriver.h"
#include "SUUpdater.h"
#include "SystemLog.h"
#include "TLAppDelegate.h"
#include "TLDocument.h"
#include "TLDocumentController.h"
#include "TLMainMenu.h"

#include <QApplication>
#include <QDir>
#include <QMainWindow>
#include <QSocketNotifier>
#include <QTextStream>
#include <QTimer>
#include <QUrl>
#include <QWindow>
#include <csignal>
#include <fontconfig/fontconfig.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

// SIGTERM (the session ending) is turned into an ordinary quit through this pair of sockets: the
// handler only writes a byte, the event loop does the rest.
int terminationSockets[2] = { -1, -1 };

void noteTermination(int)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(terminationSockets[1], &byte, 1);
}

// Runs the work from the event loop once the window has been drawn for the first time (its first
// exposure paints it), or after a second if it never is.
class AfterFirstDrawing : public QObject {
public:
    AfterFirstDrawing(QWindow* window, QObject* owner, std::function<void()> work)
        : QObject(owner)
        , m_work(std::move(work))
    {
        window->installEventFilter(this);
        QTimer::singleShot(1000, this, &AfterFirstDrawing::run);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Expose && static_cast<QWindow*>(watched)->isExposed())
            QTimer::singleShot(0, this, &AfterFirstDrawing::run);
        return false;
    }

private:
    // The work may run an event loop of its own, in which the other trigger comes: this object is
    // not touched once the work has begun.
    void run()
    {
        const std::function<void()> work = std::exchange(m_work, {});
        deleteLater();
        if (work)
            work();
    }

    std::function<void()> m_work;
};

}

TLApplication::TLApplication(QApplication& application)
    : m_application(application)
    , m_instance(std::make_unique<ApplicationInstance>(Bundle::mainBundle().bundleIdentifier()))
    , m_delegate(std::make_unique<TLAppDelegate>())
    , m_documents(std::make_unique<TLDocumentController>())
    , m_menu(std::make_unique<TLMainMenu>(*m_delegate, *m_documents))
    , m_updaterWindows(std::make_unique<SUStandardUserDriver>())
{
    // As the main interface file would: the delegate answers every feed request, also those of
    // the schedule, not only the checks the user starts.
    SUUpdater::sharedUpdater()->setDelegate(m_delegate.get());
    SUUpdater::sharedUpdater()->setUserDriver(m_updaterWindows.get());
    // The title is the alert's message, the panel's message its informative text.
    NSSetAlertPanelRunner(
        [](const QString& title, const QString& message, const QString& defaultButton,
            const QString& alternateButton, const QString& otherButton) {
            return NSAlert::alertWithMessageText(
                title, defaultButton, alternateButton, otherButton, message)
                ->runModal();
        });
    connect(m_documents.get(), &TLDocumentController::documentOpened, this,
        [this](TLDocument* document) { m_menu->installMenuBar(document->window()); });
    connect(
        m_documents.get(), &TLDocumentController::urlCommandRequested, this, [](const QUrl& url) {
            NSAppleEventManager::sharedAppleEventManager().dispatchGetURL(
                url.toString(QUrl::FullyEncoded));
        });
    connect(
        m_delegate.get(), &TLAppDelegate::activateRequested, this, &TLApplication::bringForward);
    connect(m_instance.get(), &ApplicationInstance::activateRequested, this, [this] {
        whenLaunched([this] {
            bringForward();
            if (m_documents->documents().isEmpty())
                m_documents->openDocument(nullptr);
        });
    });
    connect(m_instance.get(), &ApplicationInstance::openRequested, this,
        [this](const QStringList& uris) { whenLaunched([this, uris] { openArguments(uris); }); });
    SUUpdater* updater = SUUpdater::sharedUpdater();
    connect(updater, &SUUpdater::willRelaunchApplication, m_instance.get(),
        &ApplicationInstance::release);
    connect(updater, &SUUpdater::relaunchFailed, this, [this] { m_instance->claim({}); });
}

TLApplication::~TLApplication()
{
    NSSetAlertPanelRunner({});
    SUUpdater* updater = SUUpdater::sharedUpdater();
    updater->setUserDriver(nullptr);
    if (updater->delegate() == m_delegate.get())
        updater->setDelegate(nullptr);
}

int TLApplication::run()
{
    const QStringList arguments = m_application.arguments().mid(1);
    // Another copy than the running one (one just downloaded, while the installed one runs) is
    // another program to the desktop: it may offer to move itself, which hands over to the
    // running copy, before it hands its arguments over as any later launch does.
    const QString runningCopy = m_instance->ownerExecutable();
    const bool launchedBeforeClaim
        = !runningCopy.isEmpty() && runningCopy != QCoreApplication::applicationFilePath();
    if (launchedBeforeClaim)
        m_delegate->applicationWillFinishLaunching();
    if (m_instance->claim(arguments) == ApplicationInstance::Role::Forwarded)
        return 0;

    if (!launchedBeforeClaim)
        m_delegate->applicationWillFinishLaunching();
    openArguments(arguments);
    // The rest of the launch, telling the desktop where Tolvane is included, waits until the
    // window of the arguments is on the screen.
    const auto rest = [this, openPanel = arguments.isEmpty()] {
        registerWithDesktop();
        m_delegate->applicationDidFinishLaunching();
        finishLaunching();
        if (openPanel)
            m_documents->openDocument(nullptr);
        quitWhenNothingIsShown();
    };
    QWindow* window = m_documents->documents().isEmpty()
        ? nullptr
        : m_documents->documents().constLast()->window()->windowHandle();
    if (window && !window->isExposed())
        new AfterFirstDrawing(window, this, rest);
    else
        QTimer::singleShot(0, this, rest);
    quitOnTermination();
    const int status = m_application.exec();
    SUUpdater::sharedUpdater()->applicationWillTerminate();
    return status;
}

void TLApplication::whenLaunched(const std::function<void()>& work)
{
    if (m_launched)
        work();
    else
        m_untilLaunched.append(work);
}

void TLApplication::finishLaunching()
{
    m_launched = true;
    SUUpdater::sharedUpdater()->startUpdater();
    for (const auto& work : std::exchange(m_untilLaunched, {}))
        work();
}

void TLApplication::quitOnTermination()
{
    if (terminationSockets[0] >= 0
        || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, terminationSockets) != 0)
        return;
    auto* notifier = new QSocketNotifier(terminationSockets[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte;
        [[maybe_unused]] const ssize_t read = ::read(terminationSockets[0], &byte, 1);
        m_application.quit();
    });
    struct sigaction action = {};
    action.sa_handler = noteTermination;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
}

void TLApplication::openArguments(const QStringList& arguments)
{
    for (const QString& uri :
        ApplicationInstance::urisFromArguments(arguments, QDir::currentPath())) {
        const QUrl url(uri);
        if (url.isLocalFile())
            m_documents->openDocumentOrAlert(url);
        else
            NSAppleEventManager::sharedAppleEventManager().dispatchGetURL(uri);
    }
}

// Started from anywhere, the application tells the desktop where it is now, so that its files,
// its links and its menu entry lead here.
void TLApplication::registerWithDesktop()
{
    const auto outcome = DesktopRegistration::updateRegistrationAtLaunch(Bundle::mainBundle());
    if (!outcome.error.isEmpty())
        NSLog(QStringLiteral("WARNING -- the desktop was not told where Tolvane is: %1")
                  .arg(outcome.error));
}

void TLApplication::bringForward()
{
    QWidget* window = m_application.activeWindow();
    if (!window && !m_documents->documents().isEmpty())
        window = m_documents->documents().constLast()->window();
    if (window) {
        window->show();
        window->raise();
        window->activateWindow();
    }
}

// A launch that only revealed files shows no window: it ends once the reveal has been sent.
void TLApplication::quitWhenNothingIsShown()
{
    QTimer::singleShot(1000, this, [this] {
        for (QWidget* window : m_application.topLevelWidgets()) {
            if (window->isVisible())
                return;
        }
        m_application.quit();
    });
}

namespace {

// Tolvane --unregister: takes back what starting Tolvane.app from the user's files told the
// desktop. Needs no display.
int unregisterFromDesktop(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QString identifier = Bundle::mainBundle().bundleIdentifier();
    const auto outcome = DesktopRegistration::unregister(identifier);
    QTextStream out(stdout);
    for (const QString& path : outcome.changedFiles)
        out << "removed " << path << Qt::endl;
    if (!outcome.error.isEmpty()) {
        QTextStream(stderr) << "Tolvane: " << outcome.error << Qt::endl;
        return 1;
    }
    if (outcome.changedFiles.isEmpty())
        out << identifier << " was not registered" << Qt::endl;
    return 0;
}

}

int NSApplicationMain(int argc, char** argv)
{
    if (argc == 2 && qstrcmp(argv[1], "--unregister") == 0)
        return unregisterFromDesktop(argc, argv);
    // The font configuration is read on its own while the application connects to the display:
    // the first window's text would otherwise wait for it. Qt finds it read.
    std::thread fontConfiguration(FcInit);
    QApplication application(argc, argv);
    fontConfiguration.join();
    QApplication::setStyle(new DrawnIconStyle);
    const QVariantMap info = Bundle::mainBundle().infoDictionary();
    QApplication::setApplicationName(info.value(QStringLiteral("CFBundleName")).toString());
    QApplication::setApplicationVersion(
        info.value(QStringLiteral("CFBundleShortVersionString")).toString());
    QApplication::setDesktopFileName(Bundle::mainBundle().bundleIdentifier());
    Localization::installTranslations(Bundle::mainBundle());
    TLApplication tolvane(application);
    return tolvane.run();
}
