// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The desktop's network settings, where a user looks into a connection that does not work:
// GNOME's or KDE's settings at their network page, or NetworkManager's connection editor,
// whichever is installed, the current desktop's own first. Started detached; false when none
// could be started.
bool openNetworkDiagnostics();
