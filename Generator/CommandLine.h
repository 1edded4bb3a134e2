// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QTextStream>

namespace Preview {

// Runs one command of the generator's contract (QLGeneratorContract.h), arguments without the
// program name, and returns its exit status. Failures print one line "<words>: <reason>" to err.
int runCommandLine(const QStringList& arguments, QTextStream& out, QTextStream& err);

}
