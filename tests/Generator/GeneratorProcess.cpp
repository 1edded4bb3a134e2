// SPDX-License-Identifier: GPL-3.0-or-later
#include "GeneratorProcess.h"

#include "QLGeneratorContract.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace GeneratorProcess {

Outcome runGenerator(const QStringList& arguments, const RunOptions& options)
{
    QProcess process;
    process.setProgram(QStringLiteral(VISTREL_EXECUTABLE));
    process.setArguments(arguments);
    // Temporary files would go here; the tests check that none are left, or made at all.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString temporary = TestEnvironment::home() + QStringLiteral("/tmp");
    QDir().mkpath(temporary);
    environment.insert(QStringLiteral("TMPDIR"), temporary);
    if (options.environment)
        options.environment(environment);
    process.setProcessEnvironment(environment);
    if (!options.workingFolder.isEmpty())
        process.setWorkingDirectory(options.workingFolder);
    process.setChildProcessModifier(
        [seconds = rlim_t(options.cpuSeconds), bytes = rlim_t(options.addressSpaceBytes)] {
            const rlimit cpu { seconds, seconds };
            if (seconds > 0)
                setrlimit(RLIMIT_CPU, &cpu);
            const rlimit addressSpace { bytes, bytes };
            if (bytes > 0)
                setrlimit(RLIMIT_AS, &addressSpace);
        });
    process.start();
    Outcome result;
    // The event loop runs meanwhile, so that a server of the test can answer the generator.
    if (!TestEnvironment::waitUntil(
            [&] { return process.state() == QProcess::NotRunning; }, 120000)) {
        process.kill();
        process.waitForFinished();
        result.standardError = QStringLiteral("(timed out)");
        ADD_FAILURE() << "the generator did not finish: " << arguments.join(' ').toStdString();
        return result;
    }
    result.standardError = QString::fromUtf8(process.readAllStandardError());
    result.standardOutput = process.readAllStandardOutput();
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit)
        << "the generator ended by a signal: " << result.standardError.toStdString();
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    if (result.exitCode > 0) {
        const QString words = QLGeneratorContract::exitStatusWords(result.exitCode);
        EXPECT_TRUE(result.standardError.startsWith(words + QStringLiteral(": ")))
            << result.standardError.toStdString();
        EXPECT_EQ(result.standardError.count(u'\n'), 1) << result.standardError.toStdString();
    }
    return result;
}

QString out() { return TestEnvironment::home() + QStringLiteral("/out"); }

QString page(const QString& folder)
{
    return QString::fromUtf8(TestEnvironment::readFile(folder + QStringLiteral("/index.html")));
}

QString previewPage(const QString& file, const QString& folder, const QStringList& arguments,
    const RunOptions& options)
{
    const Outcome run = runGenerator(
        QStringList { "preview" } + arguments + QStringList { file, "--out", folder }, options);
    EXPECT_EQ(run.exitCode, 0) << run.standardError.toStdString();
    return page(folder);
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
