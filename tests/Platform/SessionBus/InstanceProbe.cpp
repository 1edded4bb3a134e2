// SPDX-License-Identifier: GPL-3.0-or-later
// instance_probe IDENTIFIER [ARGUMENT...]: claims the application instance as a launch would and
// prints the role it got ("Primary", "Forwarded" or "Alone").
#include "ApplicationInstance.h"

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QStringList arguments = application.arguments().mid(1);
    if (arguments.isEmpty()) {
        std::fprintf(stderr, "usage: instance_probe IDENTIFIER [ARGUMENT...]\n");
        return 2;
    }
    ApplicationInstance instance(arguments.takeFirst());
    const char* role = "Alone";
    switch (instance.claim(arguments)) {
    case ApplicationInstance::Role::Primary:
        role = "Primary";
        break;
    case ApplicationInstance::Role::Forwarded:
        role = "Forwarded";
        break;
    case ApplicationInstance::Role::Alone:
        break;
    }
    std::printf("%s\n", role);
    return 0;
}
