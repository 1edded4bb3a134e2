// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <memory>

class QGuiApplication;

// How the generator's process starts: its arguments as its own command line reads them, and the
// application object that drawing text needs, with nothing of Qt's in between.
namespace Preview {

// The arguments after the program's name. One that is not UTF-8 (a file name from an older
// system) cannot be held in a QString: when it names a file, the file is opened and the argument
// becomes /proc/self/fd/N, which every library and Ghostscript (inheriting the descriptor) open
// as that file.
QStringList programArguments(int argc, char** argv);

// The name to show for a file given as /proc/self/fd/N: the file's own name, as far as it can be
// read; any other path's file name.
QString shownFileName(const QString& path);

// The application object, drawing off screen. Qt takes options of its own (-platform, -reverse,
// ...) from the arguments it gets; it gets only the program's name, so that a file named like one
// stays a file. It makes no runtime folder either ($TMPDIR/runtime-$USER) when XDG_RUNTIME_DIR is
// unset: the generator writes nothing outside its output.
std::unique_ptr<QGuiApplication> makeApplication(char* programName);

}
