// SPDX-License-Identifier: GPL-3.0-or-later
#include "DefaultsTool.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    return DefaultsTool::run(application.arguments().mid(1), out, err);
}
