// SPDX-License-Identifier: GPL-3.0-or-later
#include "ParseResult.h"

namespace Formats {

QString formatErrorText(FormatError error)
{
    switch (error) {
    case FormatError::NotThisKind:
        return QStringLiteral("not a file of this kind");
    case FormatError::DamagedFile:
        return QStringLiteral("damaged file");
    case FormatError::UnsupportedVariant:
        return QStringLiteral("unsupported variant");
    }
    return QStringLiteral("damaged file");
}

}
