// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSCalendarDate-RelativeAdditions.h"

#include "Localization.h"

#include <QLocale>

namespace RelativeAdditions {

namespace {

    QString twoDigits(int value)
    {
        return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0'));
    }

    // "%I:%M %p": a 12-hour clock with leading zeros. Month names and AM/PM are English whatever
    // the user's locale, as the platform's calendar-date formatting gives them by default.
    QString clockTime(const QTime& time)
    {
        const int hour = time.hour() % 12 == 0 ? 12 : time.hour() % 12;
        const QLocale english = QLocale::c();
        return twoDigits(hour) + u':' + twoDigits(time.minute()) + u' '
            + (time.hour() < 12 ? english.amText() : english.pmText());
    }

    // "%b %d, %Y, %I:%M %p".
    QString fullDescription(const QDate& day, const QTime& time)
    {
        return QLocale::c().monthName(day.month(), QLocale::ShortFormat) + u' '
            + twoDigits(day.day()) + QStringLiteral(", ") + QString::number(day.year())
            + QStringLiteral(", ") + clockTime(time);
    }

}

QString relativeFinderDescription(const QDateTime& date)
{
    return relativeFinderDescription(date, QDateTime::currentDateTime());
}

QString relativeFinderDescription(const QDateTime& date, const QDateTime& now)
{
    if (!date.isValid())
        return {};
    // Whole calendar days, each date in its own zone.
    const qint64 today = now.toLocalTime().date().toJulianDay();
    const qint64 day = date.date().toJulianDay();
    const char* word = nullptr;
    if (day == today)
        word = "Today";
    else if (day == today - 1)
        word = "Yesterday";
    else if (day == today + 1)
        word = "Tomorrow";
    if (word == nullptr)
        return fullDescription(date.date(), date.time());
    return Localization::localizedString(QString::fromLatin1(word)) + QStringLiteral(", ")
        + clockTime(date.time());
}

}
