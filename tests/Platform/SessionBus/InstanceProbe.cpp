// SPDX-License-Identifier: GPL-3.0-or-later
// instance_probe IDENTIFIER [ARGUMENT...]: a launch as the application's launcher makes it: hands
// the arguments to a running instance before any application object exists, else claims the
// instance, and prints the role it got ("Forwarded", "Primary" or "Alone").
#include "ApplicationInstance.h"

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char** argv)
{
    if (argc < 2)
        return 2;
    const QString identifier = QString::fromLocal8Bit(argv[1]);
    QStringList arguments;
    for (int i = 2; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    if (ApplicationInstance::forwardToRunningInstance(identifier, arguments)) {
        std::printf("Forwarded\n");
        return 0;
    }

    QCoreApplication application(argc, argv);
    ApplicationInstance instance(identifier);
    using Role = ApplicationInstance::Role;
    const Role role = instance.claim(arguments);
    std::printf("%s\n",
        role == Role::Primary ? "Primary" : (role == Role::Forwarded ? "Forwarded" : "Alone"));
    return 0;
}
