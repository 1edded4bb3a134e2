// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSCalendarDate-RelativeAdditions.h"

#include <QLocale>
#include <QTimeZone>
#include <gtest/gtest.h>

namespace {

using RelativeAdditions::relativeFinderDescription;

// Mid-afternoon on a Monday, in the local zone.
const QDateTime now(QDate(2025, 11, 3), QTime(14, 30));

QDateTime local(int year, int month, int day, int hour, int minute)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute));
}

TEST(RelativeDescription, NamesNeighbouringDaysAndDatesTheRest)
{
    const struct {
        QDateTime date;
        const char* expected;
    } cases[] = {
        { local(2025, 11, 3, 0, 0), "Today, 12:00 AM" },
        { local(2025, 11, 3, 15, 5), "Today, 03:05 PM" },
        { local(2025, 11, 3, 12, 0), "Today, 12:00 PM" },
        { local(2025, 11, 2, 23, 59), "Yesterday, 11:59 PM" },
        { local(2025, 11, 4, 9, 41), "Tomorrow, 09:41 AM" },
        { local(2025, 11, 1, 15, 5), "Nov 01, 2025, 03:05 PM" },
        { local(2024, 11, 3, 14, 30), "Nov 03, 2024, 02:30 PM" },
    };
    for (const auto& [date, expected] : cases)
        EXPECT_EQ(relativeFinderDescription(date, now), expected);
}

TEST(RelativeDescription, CountsDaysAcrossTheTurnOfTheYear)
{
    const QDateTime newYear = local(2026, 1, 1, 8, 0);
    EXPECT_EQ(
        relativeFinderDescription(local(2025, 12, 31, 23, 0), newYear), "Yesterday, 11:00 PM");
    EXPECT_EQ(
        relativeFinderDescription(local(2025, 12, 30, 23, 0), newYear), "Dec 30, 2025, 11:00 PM");
}

// A date is placed on its own calendar day in its own zone, and printed with its own clock.
TEST(RelativeDescription, UsesTheDatesOwnTimeZone)
{
    // 11:30 UTC on the 3rd, which is already the 4th at +14:00.
    const QDateTime farEast(QDate(2025, 11, 4), QTime(1, 30), QTimeZone(14 * 3600));
    EXPECT_EQ(relativeFinderDescription(farEast, now), "Tomorrow, 01:30 AM");
    // 06:00 UTC on the 3rd, still the 2nd at -10:00.
    const QDateTime farWest(QDate(2025, 11, 2), QTime(20, 0), QTimeZone(-10 * 3600));
    EXPECT_EQ(relativeFinderDescription(farWest, now), "Yesterday, 08:00 PM");
}

TEST(RelativeDescription, StaysEnglishUnderAnotherLocale)
{
    const QLocale previous;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QString description = relativeFinderDescription(local(2025, 12, 24, 18, 0), now);
    QLocale::setDefault(previous);
    EXPECT_EQ(description, "Dec 24, 2025, 06:00 PM");
}

TEST(RelativeDescription, InvalidDateGivesEmptyText)
{
    EXPECT_TRUE(relativeFinderDescription(QDateTime(), now).isEmpty());
}

TEST(RelativeDescription, WithoutAGivenMomentUsesTheClock)
{
    const QDateTime moment = QDateTime::currentDateTime();
    const QString description = relativeFinderDescription(moment);
    // The day may turn between the two readings of the clock.
    EXPECT_TRUE(description == relativeFinderDescription(moment, moment)
        || description.startsWith("Yesterday, "))
        << description.toStdString();
    EXPECT_TRUE(description.startsWith("Today, ") || description.startsWith("Yesterday, "));
}

}
