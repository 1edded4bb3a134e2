// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace Preview {

// Writes a file of the generator's output: to a new file made beside it (never opened through
// anything already there), then renamed over the path. Whatever stood at the path, a symbolic
// link to a file elsewhere included, is replaced, and nothing it pointed to is touched. A reader
// never sees half a file. Returns an empty text, or why it failed.
QString writeOutputFile(const QString& path, const QByteArray& bytes);

}
