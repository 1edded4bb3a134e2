// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Numbers and truth values read from text the way the platform's string class reads them: white
// space skipped, an optional sign, then the longest prefix that is a number; 0 when there is none.
namespace StringValues {

// Decimal digits up to the first other character ("6b2" gives 6, "beta" 0). Values past the
// range of 64 bits saturate.
qint64 integerValue(const QString& text);
// Digits with an optional fraction (" -12.5kg" gives -12.5).
double doubleValue(const QString& text);
// True when the text starts with Y, y, T, t or a digit 1-9, after blanks, a sign and leading
// zeros ("YES", "true", "+0003"); false otherwise.
bool boolValue(const QString& text);

}
