// SPDX-License-Identifier: GPL-3.0-or-later
#include "PFMoveApplication.h"

#include "Bundle.h"
#include "Localization.h"
#include "NSAlert.h"
#include "SystemLog.h"
#include "UserDefaults.h"
#include "Workspace.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>
#include <cstdlib>
#include <unistd.h>

using namespace PFMoveApplication;

namespace {

// The original platform's small system font (11 points) next to its regular one (13 points).
constexpr double smallSystemFontRatio = 11.0 / 13.0;

QString localized(const char* english)
{
    return Localization::localizedString(QString::fromUtf8(english), "MoveApplication");
}

bool isWritable(const QString& path) { return access(QFile::encodeName(path), W_OK) == 0; }

bool isInstalledCopyRunning(const QString& destinationPath)
{
    // A plain prefix test, as the Applications folder test is.
    for (const NSRunningApplication& application :
        NSWorkspace::sharedWorkspace().runningApplications()) {
        if (application.executablePath.startsWith(destinationPath))
            return true;
    }
    return false;
}

void runFailureAlert()
{
    NSAlert alert;
    alert.setMessageText(localized("Could not move to Applications folder"));
    alert.runModal();
}

// The question and whether it was answered with the move; true is stored under the suppress key
// when the user declined with the check box ticked.
bool userAgreesToMove(bool isUserApplicationsFolder, bool needAuthorization, bool inDownloads)
{
    NSAlert alert;
    alert.setAlertStyle(NSAlertStyle::Informational);
    alert.setMessageText(isUserApplicationsFolder
            ? localized("Move to Applications folder in your Home folder?")
            : localized("Move to Applications folder?"));
    QString informativeText
        = localized("I can move myself to the Applications folder if you'd like.");
    if (needAuthorization)
        informativeText
            += u' ' + localized("Note that this will require an administrator password.");
    else if (inDownloads)
        informativeText += u' ' + localized("This will keep your Downloads folder uncluttered.");
    alert.setInformativeText(informativeText);
    alert.addButtonWithTitle(localized("Move to Applications Folder"));
    QPushButton* doNotMove = alert.addButtonWithTitle(localized("Do Not Move"));
    // The key equivalent Escape; the alert gives it only to buttons titled "Cancel".
    alert.window()->setEscapeButton(doNotMove);

    alert.setShowsSuppressionButton(true);
    QCheckBox* suppression = alert.suppressionButton();
    QFont smallFont = suppression->font();
    smallFont.setPointSizeF(smallFont.pointSizeF() * smallSystemFontRatio);
    suppression->setFont(smallFont);

    if (QGuiApplication::applicationState() != Qt::ApplicationActive) {
        // Once the alert is up: the application has no other window at this point of the launch.
        QMessageBox* box = alert.window();
        QMetaObject::invokeMethod(
            box,
            [box] {
                box->raise();
                box->activateWindow();
            },
            Qt::QueuedConnection);
    }

    if (alert.runModal() == NSAlertFirstButtonReturn)
        return true;
    if (alert.suppressionButtonState())
        UserDefaults::standardUserDefaults().setBool(true, AlertSuppressKey);
    return false;
}

}

void PFMoveToApplicationsFolderIfNecessary()
{
    if (UserDefaults::standardUserDefaults().boolForKey(AlertSuppressKey))
        return;
    const QString bundlePath = Bundle::mainBundle().bundlePath();
    if (IsInApplicationsFolder(bundlePath))
        return;

    const bool isLaunchedFromDMG = IsLaunchedFromDMG();
    bool isUserApplicationsFolder = false;
    const QString applicationsDirectory = PreferredInstallLocation(&isUserApplicationsFolder);
    const QString destinationPath = applicationsDirectory + u'/' + QFileInfo(bundlePath).fileName();
    const bool needAuthorization = !isWritable(applicationsDirectory);

    if (!userAgreesToMove(
            isUserApplicationsFolder, needAuthorization, IsInDownloadsFolder(bundlePath)))
        return;
    NSLog(QStringLiteral("INFO -- Moving myself to the Applications folder"));

    if (needAuthorization) {
        // The privileged install replaces an installed copy itself, running or not.
        bool canceled = false;
        if (!AuthorizedInstall(bundlePath, destinationPath, &canceled)) {
            if (canceled) {
                NSLog(QStringLiteral("INFO -- Not moving because user canceled authorization"));
                return;
            }
            NSLog(QStringLiteral(
                "ERROR -- Could not copy myself to /Applications with authorization"));
            return runFailureAlert();
        }
    } else {
        const QFileInfo destination(destinationPath);
        if (destination.exists() || destination.isSymLink()) {
            if (isInstalledCopyRunning(destinationPath)) {
                NSLog(QStringLiteral("INFO -- Switching to an already running version"));
                // The copy started there finds the running one on the session bus, hands it
                // the activation and ends.
                NSWorkspace::sharedWorkspace().launchApplication(destinationPath);
                std::exit(0);
            }
            if (!Trash(destinationPath))
                return runFailureAlert();
        }
        if (!CopyBundle(bundlePath, destinationPath)) {
            NSLog(QStringLiteral("ERROR -- Could not copy myself to %1").arg(destinationPath));
            return runFailureAlert();
        }
    }

    // A copy on a read-only image stays where it is.
    if (!isLaunchedFromDMG && !Trash(bundlePath))
        NSLog(QStringLiteral(
            "WARNING -- Could not delete application after moving it to Applications folder"));
    Relaunch(destinationPath);
}
