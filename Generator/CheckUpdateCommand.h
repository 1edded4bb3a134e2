// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QTextStream>

namespace Preview {

// check-update [--auto]: asks the maker's update server whether a newer build of the installed
// generator exists (the request says "auto" with --auto, else "menu"). A new version prints the
// answer's three keys as "key = value" lines, an answer without one a line saying the generator is
// up to date; both exit 0. No answer (server unreachable, HTTP error, an answer that is no
// property list with a dictionary at its top, the time limit) prints one line on err, exit 1.
int runCheckUpdate(const QStringList& arguments, QTextStream& out, QTextStream& err);

}
