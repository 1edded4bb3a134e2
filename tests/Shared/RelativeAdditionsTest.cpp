// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSCalendarDate-RelativeAdditions.h"

#include <QLocale>
#include <QTimeZone>
#include <gtest/gtest.h>

namespace {

using RelativeAdditions::relativeFinderDescription;

QDateTime local(int year, int month, int day, int hour, int minute)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute));
}

// Neighbouring calendar days are named, counted across the turn of the year; a date is placed on
// its own day in its own zone and printed with its own clock, in English whatever the locale.
TEST(RelativeDescription, NamesNeighbouringDaysAndDatesTheRest)
{
    const QDateTime monday = local(2025, 11, 3, 14, 30);
    const QDateTime newYear = local(2026, 1, 1, 8, 0);
    const struct {
        QDateTime date;
        QDateTime now;
        const char* expected;
    } cases[] = {
        { local(2025, 11, 3, 0, 0), monday, "Today, 12:00 AM" },
        { local(2025, 11, 4, 15, 5), monday, "Tomorrow, 03:05 PM" },
        { local(2025, 12, 31, 23, 0), newYear, "Yesterday, 11:00 PM" },
        { local(2025, 12, 30, 23, 0), newYear, "Dec 30, 2025, 11:00 PM" },
        // 06:00 UTC on the 3rd, still the 2nd at -10:00.
        { QDateTime(QDate(2025, 11, 2), QTime(20, 0), QTimeZone(-10 * 3600)), monday,
            "Yesterday, 08:00 PM" },
        { QDateTime(), monday, "" },
    };
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    for (const auto& [date, now, expected] : cases)
        EXPECT_EQ(relativeFinderDescription(date, now), expected);
}

}
