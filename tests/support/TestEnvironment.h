// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <ostream>

// The temporary home that every test runs in. main() makes a fresh one before each test: HOME,
// XDG_DATA_HOME, XDG_CONFIG_HOME, XDG_CACHE_HOME, XDG_RUNTIME_DIR and the local domain's folders
// (TOLVANE_LOCAL_LIBRARY, TOLVANE_LOCAL_APPLICATIONS) all point into it.
namespace TestEnvironment {

void setUp();
void tearDown();

QString home();
// ~/.local/share, the user domain's Library folder.
QString userLibrary();
// The stand-in for /usr/local/share, the local domain's Library folder.
QString localLibrary();

// Writes a file, creating its folders; fails the test on error.
void writeFile(const QString& path, const QByteArray& contents);
QByteArray readFile(const QString& path);
// A file of the shared test data (tests/data).
QString dataPath(const QString& name);
// The files of this process's memory map whose paths hold one of the parts.
QStringList mappedFiles(const QStringList& parts);

// Stores in the temporary home that the application should never offer to move itself into the
// Applications folder, for tests that start a Tolvane.app from outside one.
void suppressMoveToApplicationsOffer();

// Runs the event loop, deferred deletions included, until the condition holds; false when the time
// is up first. Works with and without a QApplication.
bool waitUntil(const std::function<bool()>& condition, int milliseconds);

// What a program did: its exit status (-1 when it did not start, crashed or ran for more than
// four minutes) and all it printed, both channels together.
struct ProgramRun {
    int status = -1;
    QString output;
};
ProgramRun run(const QString& program, const QStringList& arguments,
    const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());

}

// Readable values in test failure messages.
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QVariant& value, std::ostream* out)
{
    *out << value.typeName() << "(" << value.toString().toStdString() << ")";
}
