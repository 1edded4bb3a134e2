// SPDX-License-Identifier: GPL-3.0-or-later
#include "TLAppDelegate.h"

#include "AppleEventManager.h"
#include "Bundle.h"
#include "Localization.h"
#include "NSAlert.h"
#include "NSException.h"
#include "PFMoveApplication.h"
#include "QXAboutWindowController.h"
#include "QXUtilities.h"
#include "QXVersionInfo.h"
#include "SUUpdater.h"
#include "SystemLog.h"
#include "TLPrefrencesWindowController.h"
#include "UserDefaults.h"
#include "VistrelAutoUpdate.h"
#include "VistrelUtilities.h"
#include "Workspace.h"

#include <QTimer>
#include <cstdlib>

namespace {

const QString enableAutomaticChecksKey = QStringLiteral("SUEnableAutomaticChecks");
const QString preferencesApplicationVersionKey = QStringLiteral("Preferences Application Version");

QXVersion cachedSystemVersion()
{
    return QXVersionInfo::sharedVersionInfo().currentOperatingSystemVersion();
}

}

TLAppDelegate::TLAppDelegate(QObject* parent)
    : QObject(parent)
{
}

TLAppDelegate::~TLAppDelegate()
{
    NSAppleEventManager::sharedAppleEventManager().removeEventHandler(
        kInternetEventClass, kAEGetURL);
    if (SUUpdater::sharedUpdater()->delegate() == this)
        SUUpdater::sharedUpdater()->setDelegate(nullptr);
    QXWelcomeScreen* welcomeScreen = QXWelcomeScreen::sharedWelcomeScreenWithDelegate(nullptr);
    if (welcomeScreen->delegate() == this)
        welcomeScreen->setDelegate(nullptr);
}

void TLAppDelegate::applicationWillFinishLaunching()
{
    NSAppleEventManager::sharedAppleEventManager().setEventHandler(
        [this](const NSAppleEventDescriptor& event, const NSAppleEventDescriptor& reply) {
            handleURLEvent(event, reply);
        },
        kInternetEventClass, kAEGetURL);

    // A damaged preferences file costs the registration, not the launch.
    try {
        UserDefaults::standardUserDefaults().registerDefaults(VTUserDefaults());
    } catch (const NSException& error) {
        NSLog(QStringLiteral("ERROR -- the preview settings were not registered: %1")
                  .arg(error.reason()));
    }

    if (!VTOperatingSystemIsCompatibleCompatible())
        runIncompatibilityAlertAndExit();
    PFMoveToApplicationsFolderIfNecessary();
}

void TLAppDelegate::runIncompatibilityAlertAndExit()
{
    const QString message
        = NSLocalizedString(
            QStringLiteral("This version of Tolvane, version %1, is incompatible with "
                           "Mac OS X %2"))
              .arg(QXApplicationVersion(), NSStringFromQXVersion(cachedSystemVersion()));
    auto alert = NSAlert::alertWithMessageText(message,
        NSLocalizedString(QStringLiteral("Check for Update")),
        NSLocalizedString(QStringLiteral("Cancel")), QString(),
        NSLocalizedString(
            QStringLiteral("Visit our website to check for a newer version of the application.")));
    // "Check for Update" leads to the product's web page, not to the updater.
    if (alert->runModal() == NSAlertDefaultReturn)
        visitWebsite();
    std::exit(0);
}

void TLAppDelegate::applicationDidFinishLaunching()
{
    UserDefaults& defaults = UserDefaults::standardUserDefaults();
    if (!defaults.objectForKey(enableAutomaticChecksKey).isValid())
        defaults.setBool(true, enableAutomaticChecksKey);

    if (QXWelcomeScreen::showAtStartup())
        QXWelcomeScreen::displayIfPossibleWithDelegate(this, true);

    defaults.setObject(Bundle::mainBundle().objectForInfoDictionaryKey(
                           QStringLiteral("CFBundleShortVersionString")),
        preferencesApplicationVersionKey);

    // The checks bring in the network and TLS libraries and wait for servers: they start once the
    // application has been up a while, so that a glance at a file never pays for them.
    QTimer::singleShot(m_launchUpdateChecksDelay, this, [this] {
        // Reads as "the given 10.9.0 is at least the running system": the launch-time check runs
        // only on systems up to that version.
        if (QXOperatingSystemIsGreaterThanOrEqualToVersion(10, 9, 0)
            && UserDefaults::standardUserDefaults().boolForKey(enableAutomaticChecksKey))
            SUUpdater::sharedUpdater()->checkForUpdatesInBackground();
        runGeneratorUpdateCheck(true);
    });
}

void TLAppDelegate::showPreferences()
{
    if (!_prefController)
        _prefController = std::make_unique<TLPrefrencesWindowController>();
    _prefController->showWindow();
}

void TLAppDelegate::showAboutWindow()
{
    // A new controller for every showing; its window runs modally until it is closed.
    QXAboutWindowController controller;
    controller.showWindow();
}

void TLAppDelegate::checkForUpdate()
{
    SUUpdater* updater = SUUpdater::sharedUpdater();
    updater->setDelegate(this);
    updater->checkForUpdates();
}

void TLAppDelegate::displayWelcomeScreen()
{
    QXWelcomeScreen::displayIfPossibleWithDelegate(this, false);
}

void TLAppDelegate::checkForGeneratorUpdate() { runGeneratorUpdateCheck(false); }

void TLAppDelegate::runGeneratorUpdateCheck(bool automatic)
{
    // The check keeps the event loop running while it waits, so the menu could start another.
    if (m_generatorUpdateCheckRunning)
        return;
    m_generatorUpdateCheckRunning = true;
    emit generatorUpdateCheckRunning(true);
    VistrelAutoUpdate* checker = VistrelAutoUpdate::sharedAutoUpdate();
    try {
        if (automatic)
            checker->autoCheckForUpdate();
        else
            checker->checkForUpdateAndShowNone(true, true, false);
    } catch (const NSException& error) {
        NSLog(
            QStringLiteral("ERROR -- the generator's update check failed: %1").arg(error.reason()));
    }
    m_generatorUpdateCheckRunning = false;
    emit generatorUpdateCheckRunning(false);
}

QString TLAppDelegate::typeForWelcomeScreen(QXWelcomeScreen*) { return QStringLiteral("RA"); }

void TLAppDelegate::visitWebsite() { visitURLFromInfoDictionary(QStringLiteral("QXAppURL")); }

void TLAppDelegate::visitFeedbackAndSupport()
{
    visitURLFromInfoDictionary(QStringLiteral("QXSupportURL"));
}

void TLAppDelegate::visitURLFromInfoDictionary(const QString& key)
{
    NSWorkspace::sharedWorkspace().openURL(
        QUrl(Bundle::mainBundle().objectForInfoDictionaryKey(key).toString()));
}
