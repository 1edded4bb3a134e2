// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUVersionComparison.h"

#include <QList>
#include <QStringView>

namespace SUVersionComparison {

namespace {

    // Pre-release ranks; a plain release ranks above all of them.
    enum Rank { UnknownWord, Alpha, Beta, ReleaseCandidate, Release };

    struct ParsedVersion {
        QList<QStringView> numbers; // digits only, leading zeros stripped
        Rank rank = Release;
        QList<QStringView> preReleaseNumbers;
    };

    bool isAsciiDigit(QChar c) { return c >= u'0' && c <= u'9'; }

    Rank rankOfWord(QStringView word)
    {
        const QString lower = word.toString().toLower();
        if (lower == u"a" || lower == u"alpha")
            return Alpha;
        if (lower == u"b" || lower == u"beta")
            return Beta;
        if (lower == u"rc" || lower == u"c" || lower == u"pre")
            return ReleaseCandidate;
        return UnknownWord;
    }

    QStringView withoutLeadingZeros(QStringView digits)
    {
        qsizetype start = 0;
        while (start < digits.size() - 1 && digits[start] == u'0')
            ++start;
        return digits.mid(start);
    }

    ParsedVersion parse(QStringView text)
    {
        if (const qsizetype dash = text.indexOf(u'-'); dash >= 0)
            text = text.left(dash);

        ParsedVersion version;
        QList<QStringView>* numbers = &version.numbers;
        qsizetype i = 0;
        while (i < text.size()) {
            const QChar c = text[i];
            if (isAsciiDigit(c)) {
                qsizetype end = i;
                while (end < text.size() && isAsciiDigit(text[end]))
                    ++end;
                numbers->append(withoutLeadingZeros(text.mid(i, end - i)));
                i = end;
            } else if (c.isLetter()) {
                // Only the first word counts; whatever follows the pre-release numbers is ignored.
                if (version.rank != Release)
                    break;
                qsizetype end = i;
                while (end < text.size() && text[end].isLetter())
                    ++end;
                version.rank = rankOfWord(text.mid(i, end - i));
                numbers = &version.preReleaseNumbers;
                i = end;
            } else {
                ++i; // separators: ".", blanks, "_" and the like
            }
        }
        return version;
    }

    int compareNumber(QStringView a, QStringView b)
    {
        if (a.size() != b.size())
            return a.size() < b.size() ? -1 : 1;
        const int order = a.compare(b);
        return order < 0 ? -1 : (order > 0 ? 1 : 0);
    }

    int compareNumberLists(const QList<QStringView>& a, const QList<QStringView>& b)
    {
        static const QString zero = QStringLiteral("0");
        const qsizetype count = std::max(a.size(), b.size());
        for (qsizetype i = 0; i < count; ++i) {
            const QStringView left = i < a.size() ? a[i] : QStringView(zero);
            const QStringView right = i < b.size() ? b[i] : QStringView(zero);
            if (const int order = compareNumber(left, right); order != 0)
                return order;
        }
        return 0;
    }

}

int compareVersions(const QString& a, const QString& b)
{
    const ParsedVersion left = parse(a);
    const ParsedVersion right = parse(b);
    if (const int order = compareNumberLists(left.numbers, right.numbers); order != 0)
        return order;
    if (left.rank != right.rank)
        return left.rank < right.rank ? -1 : 1;
    return compareNumberLists(left.preReleaseNumbers, right.preReleaseNumbers);
}

}
