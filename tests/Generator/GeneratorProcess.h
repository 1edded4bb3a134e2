// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <functional>

// Runs the built generator as the application runs it, in the test's temporary home.
namespace GeneratorProcess {

struct Outcome {
    int exitCode = -1;
    QString standardError;
    QByteArray standardOutput;
};

struct RunOptions {
    QString workingFolder = {};
    // Changes to the environment the generator gets.
    std::function<void(QProcessEnvironment&)> environment = {};
    // Limits of processor time and address space the caller sets (0: none of its own), lower
    // than the generator's own; Ghostscript inherits them.
    int cpuSeconds = 0;
    qint64 addressSpaceBytes = 0;
};

// Every run is also checked against the contract: the generator never ends by a signal, and a
// failure is one line that starts with the words of its status.
Outcome runGenerator(const QStringList& arguments, const RunOptions& options = {});

// The output folder in the test's home, the page written into a folder, and the page of a preview
// that must succeed (extra arguments such as "--uti" go before the file).
QString out();
QString page(const QString& folder = out());
QString previewPage(const QString& file, const QString& folder = out(),
    const QStringList& arguments = {}, const RunOptions& options = {});

// A test file of tests/data/generator or tests/data/formats/samples.
QString generatorData(const QString& name);
QString formatsSample(const QString& name);

// Every file below a folder, as paths relative to it, sorted.
QStringList filesBelow(const QString& folder);

}
