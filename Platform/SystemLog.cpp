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

    // One line per message, whatever the text holds: control characters, which could end the
    // line or steer a terminal, are written as escapes.
    QByteArray line;
    for (const char c : message.toUtf8()) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
            line += "\\x"
                + QByteArray::number(static_cast<unsigned char>(c), 16).rightJustified(2, '0');
        else
            line += c;
    }
    std::fprintf(stderr, "%s\n", line.constData());
    std::fflush(stderr);
    syslog(LOG_USER | priority, "%s", line.constData());
}
