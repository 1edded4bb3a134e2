// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <functional>

// Application-modal alert panels for code that links no widgets. The program that has windows
// installs the runner that shows them; a program without one shows nothing.

// What an alert returns for its default, alternate and other button.
enum : long {
    NSAlertDefaultReturn = 1,
    NSAlertAlternateReturn = 0,
    NSAlertOtherReturn = -1,
    // No panel could be shown.
    NSAlertErrorReturn = -2,
};

// Shows a panel with the title as its message, the text below it and up to three buttons (a null
// title means no such button; a null default title is "OK") and returns the pressed button's
// result.
using NSAlertPanelRunner = std::function<long(const QString& title, const QString& message,
    const QString& defaultButton, const QString& alternateButton, const QString& otherButton)>;

// Replaces the runner; an empty one removes it.
void NSSetAlertPanelRunner(NSAlertPanelRunner runner);

// Runs the panel with the installed runner. Without a runner the panel is logged and
// NSAlertErrorReturn returned.
long NSRunAlertPanel(const QString& title, const QString& message, const QString& defaultButton,
    const QString& alternateButton, const QString& otherButton);
