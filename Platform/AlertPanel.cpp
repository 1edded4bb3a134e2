// SPDX-License-Identifier: GPL-3.0-or-later
#include "AlertPanel.h"

#include "SystemLog.h"

namespace {

NSAlertPanelRunner& installedRunner()
{
    static NSAlertPanelRunner runner;
    return runner;
}

}

void NSSetAlertPanelRunner(NSAlertPanelRunner runner) { installedRunner() = std::move(runner); }

long NSRunAlertPanel(const QString& title, const QString& message, const QString& defaultButton,
    const QString& alternateButton, const QString& otherButton)
{
    if (!installedRunner()) {
        NSLog(QStringLiteral("INFO -- alert not shown, no windows: %1 %2").arg(title, message));
        return NSAlertErrorReturn;
    }
    return installedRunner()(title, message, defaultButton, alternateButton, otherButton);
}
