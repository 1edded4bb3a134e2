// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <optional>

namespace Formats {

// The values of DSC comments: words separated by blanks, where a word that opens with "(" is a
// PostScript string running to its balancing ")" with backslash escapes. Text is read as
// Latin-1, the only encoding the comments promise.
namespace DscValues {

    QStringList tokens(QByteArrayView text);

    // A whole value: a single PostScript string loses its parentheses, anything else is
    // trimmed and kept as it is.
    QString text(QByteArrayView value);

    // A finite number, or nothing.
    std::optional<double> number(const QString& token);

    bool isAtEnd(QByteArrayView value); // "(atend)"

}

}
