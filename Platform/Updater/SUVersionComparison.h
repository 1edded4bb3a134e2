// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// The one ordering of version texts used by the updater, with the usual rules of update feeds:
// - numeric parts compare as numbers, of any length ("1.10" after "1.9");
// - missing numeric parts count as zero ("1.0" equals "1.0.0");
// - a pre-release word after the numbers comes before the release itself, ranked
//   unknown words < "a"/"alpha" < "b"/"beta" < "rc"/"c"/"pre", then by the numbers after it
//   ("1.0a1" < "1.0b1" < "1.0b2" < "1.0rc1" < "1.0");
// - text from the first "-" on is ignored ("2.1-linux" equals "2.1");
// - letters compare without regard to case and blanks between the parts do not matter.
namespace SUVersionComparison {

// -1 when a is older than b, 0 when they are the same version, 1 when a is newer.
int compareVersions(const QString& a, const QString& b);

}
