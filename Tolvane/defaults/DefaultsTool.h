// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QTextStream>
#include <QVariant>

// tolvane-defaults: reads and writes preferences domains from a shell.
//   read DOMAIN [KEY]      the domain's settings (or one), one "key = value" line each
//   read-merged            the preview settings as the generator sees them
//   write DOMAIN KEY -bool|-int|-float|-string VALUE
//   delete DOMAIN [KEY]    one setting, or the whole domain
//   path DOMAIN            the domain's file
// Exit status: 0 done; 1 no such key; 2 a usage error, an unknown domain, a bad kind or value
// (nothing is written then); 3 the file could not be read or written.
namespace DefaultsTool {

int run(const QStringList& arguments, QTextStream& out, QTextStream& err);

// A value as the tool prints it: true/false, integers plainly, reals always with a decimal
// point, text in double quotes, dates in ISO 8601, data as <hex>, arrays as ( a, b ),
// dictionaries as { key = value; }.
QString formatValue(const QVariant& value);

}
