// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// Runs the built generator as the application runs it, in the test's temporary home.
namespace GeneratorProcess {

struct Outcome {
    int exitCode = -1;
    QString standardError;
    QByteArray standardOutput;
};

Outcome runGenerator(const QStringList& arguments, const QString& workingFolder = {});

// A test file of tests/data/generator or tests/data/formats/samples.
QString generatorData(const QString& name);
QString formatsSample(const QString& name);

// Every file below a folder, as paths relative to it, sorted.
QStringList filesBelow(const QString& folder);

}
