// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class Bundle;

// Localised texts: a table is a translation context ("Localizable" for the default table), the
// English text is the key, and an untranslated text is the English one.
namespace Localization {

inline constexpr const char* defaultTable = "Localizable";

// Loads Resources/translations/<bundle executable>_<language>.qm of the bundle for the default
// locale's languages into the running application. Returns whether one was loaded.
bool installTranslations(const Bundle& bundle);

QString localizedString(const QString& key, const char* table = defaultTable);

}

// The platform's shorthand for the default table.
inline QString NSLocalizedString(const QString& key)
{
    return Localization::localizedString(key);
}
