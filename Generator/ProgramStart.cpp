// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProgramStart.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <fcntl.h>

namespace Preview {

namespace {

    const QString DescriptorFolder = QStringLiteral("/proc/self/fd/");

}

QStringList programArguments(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        const QByteArray bytes(argv[i]);
        const QString decoded = QFile::decodeName(bytes);
        if (QFile::encodeName(decoded) == bytes) {
            arguments.append(decoded);
            continue;
        }
        // Left open for the life of the process, and inherited by the programs it starts.
        const int descriptor = ::open(bytes.constData(), O_RDONLY);
        arguments.append(
            descriptor >= 0 ? DescriptorFolder + QString::number(descriptor) : decoded);
    }
    return arguments;
}

QString shownFileName(const QString& path)
{
    if (path.startsWith(DescriptorFolder))
        return QFileInfo(QFile::symLinkTarget(path)).fileName();
    return QFileInfo(path).fileName();
}

std::unique_ptr<QGuiApplication> makeApplication(char* programName)
{
    static int argc = 1;
    static char* argv[] = { programName, nullptr };
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Qt looks for a sandbox's marker in the runtime folder while it starts and, without
    // XDG_RUNTIME_DIR, makes one in the temporary folder. Under a temporary folder that is no
    // folder it finds nothing and makes nothing.
    const bool noRuntimeFolder = qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR");
    const QByteArray temporary = qgetenv("TMPDIR");
    const bool hadTemporary = qEnvironmentVariableIsSet("TMPDIR");
    if (noRuntimeFolder)
        qputenv("TMPDIR", "/dev/null");
    auto application = std::make_unique<QGuiApplication>(argc, argv);
    if (noRuntimeFolder) {
        if (hadTemporary)
            qputenv("TMPDIR", temporary);
        else
            qunsetenv("TMPDIR");
    }
    return application;
}

}
