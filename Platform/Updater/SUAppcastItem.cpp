// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUAppcastItem.h"

#include "SUVersionComparison.h"

QDateTime SUAppcastItem::date() const
{
    return QDateTime::fromString(dateString.trimmed(), Qt::RFC2822Date);
}

bool SUAppcastItem::isCriticalFor(const QString& hostVersion) const
{
    return criticalUpdate
        && (criticalUpdateVersion.isEmpty()
            || SUVersionComparison::compareVersions(hostVersion, criticalUpdateVersion) < 0);
}

bool SUAppcastItem::supportsSystem(const QString& systemVersion) const
{
    using SUVersionComparison::compareVersions;
    return (minimumSystemVersion.isEmpty()
               || compareVersions(systemVersion, minimumSystemVersion) >= 0)
        && (maximumSystemVersion.isEmpty()
            || compareVersions(systemVersion, maximumSystemVersion) <= 0);
}
