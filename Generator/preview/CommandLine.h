// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QTextStream>

namespace Preview {

// The generator's exit statuses: the contract with the application's preview view.
enum ExitStatus {
    ExitSuccess = 0,
    ExitOtherFailure = 1,
    ExitUsage = 2,
    ExitNotThisKind = 3,
    ExitDamagedFile = 4,
    ExitUnsupportedVariant = 5,
};

// Runs one command (arguments without the program name):
//   preview FILE [--uti UTI] --out DIR      DIR/index.html and its pictures
//   thumbnail FILE [--uti UTI] --size N --out PNG   one PNG no larger than N×N
//   check-update [--auto]                   asks whether a newer generator exists
// Failures print one line "<words>: <reason>" to err.
int runCommandLine(const QStringList& arguments, QTextStream& out, QTextStream& err);

}
