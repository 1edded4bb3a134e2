// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "QXWelcomeScreen.h"
#include "SUUpdaterDelegate.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QUrl>
#include <chrono>
#include <memory>

class NSAppleEventDescriptor;
class TLPrefrencesWindowController;

// The application's delegate: the launch sequence, the actions of the application menu, the URL
// commands of the previews, the updater's feed parameters and the welcome screen's questions.
// Everything runs on the main thread.
class TLAppDelegate : public QObject, public SUUpdaterDelegate, public QXWelcomeScreenDelegate {
    Q_OBJECT
public:
    explicit TLAppDelegate(QObject* parent = nullptr);
    ~TLAppDelegate() override;

    // Registers the URL handler and the preview settings' defaults, then tests the system: on an
    // unsupported one it shows the incompatibility alert and ends the process with status 0; on
    // a supported one it offers to move the application into the Applications folder, which may
    // end the process too.
    void applicationWillFinishLaunching();
    // Turns automatic checks on when never set, shows the welcome screen when it is due and the
    // network is there, records the application's version, and then, after the launch's update
    // checks delay, starts the background check where the launch rule allows it and checks for a
    // newer generator when its update frequency says so.
    void applicationDidFinishLaunching();
    // Ten seconds unless set.
    void setLaunchUpdateChecksDelay(std::chrono::milliseconds delay)
    {
        m_launchUpdateChecksDelay = delay;
    }

    // Menu actions.
    void showPreferences();
    void showAboutWindow();
    void checkForUpdate();
    void displayWelcomeScreen();
    // The generator's update check with all its alerts. One asked for while a check runs is not
    // started (the menu item is disabled meanwhile).
    void checkForGeneratorUpdate();
    void visitWebsite();
    void visitFeedbackAndSupport();

    // URL commands: tolvane://reveal/image?path=..., tolvane://reveal/font?path=...&path1=...,
    // tolvane://settings[/about|/settings|/quicklook].
    void handleURLEvent(
        const NSAppleEventDescriptor& event, const NSAppleEventDescriptor& replyEvent);
    // The query's parameters: split at "&" and "=", percent escapes decoded as UTF-8 ("+" stays),
    // the last occurrence of a name wins, a=b=c gives a = b. Throws NSException (NSRangeException)
    // for a component without "=" or an escape that is not UTF-8.
    static QMap<QString, QString> _queryParametersFromURL(const QUrl& url);
    void revealURLsInBrowser(const QList<QUrl>& urls);

    QList<QVariantMap> feedParametersForUpdater(
        SUUpdater* updater, bool sendingSystemProfile) override;

    QString typeForWelcomeScreen(QXWelcomeScreen* welcomeScreen) override;

    // The one preferences window controller; none before the first showPreferences().
    TLPrefrencesWindowController* preferencesWindowController() const
    {
        return _prefController.get();
    }

signals:
    // The application should come to the front (a "settings" command).
    void activateRequested();
    // A check for a newer generator started (true) or ended (false).
    void generatorUpdateCheckRunning(bool running);

private:
    void visitURLFromInfoDictionary(const QString& key);
    void runIncompatibilityAlertAndExit();
    void runGeneratorUpdateCheck(bool automatic);

    std::unique_ptr<TLPrefrencesWindowController> _prefController;
    bool m_generatorUpdateCheckRunning = false;
    std::chrono::milliseconds m_launchUpdateChecksDelay { 10000 };
};
