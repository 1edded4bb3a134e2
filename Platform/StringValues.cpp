// SPDX-License-Identifier: GPL-3.0-or-later
#include "StringValues.h"

#include <limits>

namespace StringValues {

namespace {

    // The position after leading white space and an optional sign; *negative tells the sign.
    qsizetype skipBlanksAndSign(const QString& text, bool* negative)
    {
        qsizetype position = 0;
        while (position < text.size() && text.at(position).isSpace())
            ++position;
        *negative = false;
        if (position < text.size() && (text.at(position) == u'-' || text.at(position) == u'+')) {
            *negative = text.at(position) == u'-';
            ++position;
        }
        return position;
    }

    bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

}

qint64 integerValue(const QString& text)
{
    bool negative = false;
    qsizetype position = skipBlanksAndSign(text, &negative);
    constexpr qint64 limit = std::numeric_limits<qint64>::max();
    qint64 magnitude = 0;
    for (; position < text.size() && isDigit(text.at(position)); ++position) {
        const int digit = text.at(position).unicode() - u'0';
        if (magnitude > (limit - digit) / 10)
            return negative ? std::numeric_limits<qint64>::min() : limit;
        magnitude = magnitude * 10 + digit;
    }
    return negative ? -magnitude : magnitude;
}

double doubleValue(const QString& text)
{
    bool negative = false;
    const qsizetype start = skipBlanksAndSign(text, &negative);
    qsizetype end = start;
    while (end < text.size() && isDigit(text.at(end)))
        ++end;
    if (end < text.size() && text.at(end) == u'.') {
        ++end;
        while (end < text.size() && isDigit(text.at(end)))
            ++end;
    }
    const double magnitude = text.mid(start, end - start).toDouble();
    return negative ? -magnitude : magnitude;
}

bool boolValue(const QString& text)
{
    bool negative = false;
    qsizetype position = skipBlanksAndSign(text, &negative);
    while (position < text.size() && text.at(position) == u'0')
        ++position;
    if (position >= text.size())
        return false;
    const QChar c = text.at(position);
    return c == u'Y' || c == u'y' || c == u'T' || c == u't' || (c >= u'1' && c <= u'9');
}

}
