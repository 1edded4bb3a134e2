// SPDX-License-Identifier: GPL-3.0-or-later
// The launcher. A later launch hands its files and URLs to the running instance and ends, having
// loaded QtCore and QtDBus only; otherwise it loads the application (tolvane_application.so,
// beside this executable) and runs it in this process.
#include "ApplicationInstance.h"
#include "Bundle.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>
#include <dlfcn.h>
#include <unistd.h>

int main(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    // The running instance has the message: this process ends at once, tearing nothing down.
    // --unregister is this launch's own work, never a file to forward.
    const bool unregisters = argc == 2 && qstrcmp(argv[1], "--unregister") == 0;
    if (!unregisters
        && ApplicationInstance::forwardToRunningInstance(
            Bundle::mainBundle().bundleIdentifier(), arguments))
        _exit(0);

    const QString module = QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe")))
                               .absoluteDir()
                               .filePath(QStringLiteral("tolvane_application.so"));
    void* handle = dlopen(QFile::encodeName(module).constData(), RTLD_LAZY | RTLD_LOCAL);
    using Entry = int (*)(int, char**);
    const auto run
        = handle ? reinterpret_cast<Entry>(dlsym(handle, "TolvaneApplicationMain")) : nullptr;
    if (!run) {
        std::fprintf(stderr, "Tolvane: the application cannot be loaded: %s\n", dlerror());
        return 1;
    }
    return run(argc, argv);
}
