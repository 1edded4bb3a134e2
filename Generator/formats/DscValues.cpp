// SPDX-License-Identifier: GPL-3.0-or-later
#include "DscValues.h"

#include <cmath>

namespace Formats::DscValues {

namespace {

    bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f'; }

    // Reads a PostScript string whose "(" is at position; leaves position after its ")".
    QString readString(QByteArrayView text, qsizetype& position)
    {
        QString result;
        int depth = 0;
        for (++position; position < text.size(); ++position) {
            const char c = text[position];
            if (c == '\\' && position + 1 < text.size()) {
                const char escaped = text[++position];
                if (escaped >= '0' && escaped <= '7') {
                    int code = 0;
                    int digits = 0;
                    for (; digits < 3 && position < text.size() && text[position] >= '0'
                         && text[position] <= '7';
                         ++digits)
                        code = code * 8 + (text[position++] - '0');
                    --position;
                    result.append(QChar(code & 0xFF));
                    continue;
                }
                switch (escaped) {
                case 'n':
                    result.append(u'\n');
                    break;
                case 'r':
                    result.append(u'\r');
                    break;
                case 't':
                    result.append(u'\t');
                    break;
                case 'b':
                    result.append(u'\b');
                    break;
                case 'f':
                    result.append(u'\f');
                    break;
                default:
                    result.append(QChar(uchar(escaped)));
                }
                continue;
            }
            if (c == '(') {
                ++depth;
            } else if (c == ')') {
                if (depth == 0) {
                    ++position;
                    return result;
                }
                --depth;
            }
            result.append(QChar(uchar(c)));
        }
        return result; // an unbalanced string runs to the end of the value
    }

}

QStringList tokens(QByteArrayView text)
{
    QStringList result;
    qsizetype position = 0;
    while (position < text.size()) {
        if (isBlank(text[position])) {
            ++position;
        } else if (text[position] == '(') {
            result.append(readString(text, position));
        } else {
            const qsizetype start = position;
            while (position < text.size() && !isBlank(text[position]) && text[position] != '(')
                ++position;
            result.append(QString::fromLatin1(text.sliced(start, position - start)));
        }
    }
    return result;
}

QString text(QByteArrayView value)
{
    const QByteArrayView trimmed = value.trimmed();
    if (trimmed.startsWith('(')) {
        qsizetype position = 0;
        const QString string = readString(trimmed, position);
        if (position >= trimmed.size())
            return string;
    }
    return QString::fromLatin1(trimmed);
}

std::optional<double> number(const QString& token)
{
    bool ok = false;
    const double value = token.toDouble(&ok);
    return ok && std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

bool isAtEnd(QByteArrayView value) { return value.trimmed() == "(atend)"; }

}
