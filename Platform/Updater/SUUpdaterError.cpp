// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUUpdaterError.h"

#include "Localization.h"

QString SUUpdaterError::localizedDescription() const
{
    switch (kind) {
    case NoFeedURL:
        return NSLocalizedString("No update feed is configured for this application.");
    case NoNetwork: {
        const QString message = NSLocalizedString("The update server could not be reached. Check "
                                                  "your network connection and try again.");
        return detail.isEmpty() ? message : message + QStringLiteral(" (%1)").arg(detail);
    }
    case TimedOut:
        return NSLocalizedString("The update server did not answer in time. Try again later.");
    case ServerError:
        return NSLocalizedString("The update server answered with an error (HTTP status %1). Try "
                                 "again later.")
            .arg(httpStatus);
    case MalformedFeed: {
        const QString message
            = NSLocalizedString("The update information from the server could not be read.");
        return detail.isEmpty() ? message : message + QLatin1Char(' ') + detail;
    }
    }
    return {};
}
