// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// One line to stderr and to syslog(3). Messages start with their severity word
// ("INFO -- ", "WARNING -- ", "ERROR -- "), which also chooses the syslog priority.
void NSLog(const QString& message);
