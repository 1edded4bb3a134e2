// SPDX-License-Identifier: GPL-3.0-or-later
// Writes a preferences domain over and over until it is killed; the crash-safety test runs it.
#include "UserDefaults.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    UserDefaults defaults(arguments.value(1));
    const QString round = arguments.value(2);
    // Big enough that a write takes a while and can be caught halfway.
    const QString filler(20000, QLatin1Char('x'));
    for (qint64 i = 0;; ++i) {
        defaults.setInteger(i, QStringLiteral("counter"));
        defaults.setObject(round + filler, QStringLiteral("payload %1").arg(i % 50));
        defaults.synchronize();
    }
}
