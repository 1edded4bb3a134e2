// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>

// A date as a file browser's date column shows it: "Today, 03:05 PM", "Yesterday, ...",
// "Tomorrow, ..." for the current day and its neighbours, else "Nov 03, 2025, 09:41 AM".
namespace RelativeAdditions {

// The date is taken in its own time zone, both for its calendar day and for the printed time;
// the current day is the local one. An invalid date gives an empty text.
QString relativeFinderDescription(const QDateTime& date);
// The same, with the current moment given.
QString relativeFinderDescription(const QDateTime& date, const QDateTime& now);

}
