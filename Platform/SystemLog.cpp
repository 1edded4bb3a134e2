// SPDX-License-Identifier: GPL-3.0-or-later
#include "SystemLog.h"

#include <cstdio>
#include <syslog.h>

void NSLog(const QString& message)
{
    int priority = LOG_NOTICE;
    if (message.startsWith(QStringLiteral("ERROR")))
        priority = LOG_ERR;
    else if (message.startsWith(QStringLiteral("WARNING")))
        priority = LOG_WARNING;
    else if (message.startsWith(QStringLiteral("INFO")))
        priority = LOG_INFO;

    // One line per message, whatever the text holds.
    QByteArray line = message.toUtf8();
    line.replace('\n', ' ');
    std::fprintf(stderr, "%s\n", line.constData());
    std::fflush(stderr);
    syslog(LOG_USER | priority, "%s", line.constData());
}
