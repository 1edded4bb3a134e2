// SPDX-License-Identifier: GPL-3.0-or-later
#include "GeneratorProcess.h"

#include "TestEnvironment.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>

namespace GeneratorProcess {

Outcome runGenerator(const QStringList& arguments, const QString& workingFolder)
{
    QProcess process;
    process.setProgram(QStringLiteral(VISTREL_EXECUTABLE));
    process.setArguments(arguments);
    // Temporary files would go here; the tests check that none are left, or made at all.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString temporary = TestEnvironment::home() + QStringLiteral("/tmp");
    QDir().mkpath(temporary);
    environment.insert(QStringLiteral("TMPDIR"), temporary);
    process.setProcessEnvironment(environment);
    if (!workingFolder.isEmpty())
        process.setWorkingDirectory(workingFolder);
    process.start();
    Outcome result;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        result.standardError = QStringLiteral("(timed out)");
        return result;
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.standardError = QString::fromUtf8(process.readAllStandardError());
    result.standardOutput = process.readAllStandardOutput();
    return result;
}

QString generatorData(const QString& name)
{
    return TestEnvironment::dataPath(QStringLiteral("generator/") + name);
}

QString formatsSample(const QString& name)
{
    return TestEnvironment::dataPath(QStringLiteral("formats/samples/") + name);
}

QStringList filesBelow(const QString& folder)
{
    QStringList files;
    QDirIterator it(
        folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    const QDir root(folder);
    while (it.hasNext())
        files.append(root.relativeFilePath(it.next()));
    files.sort();
    return files;
}

}
