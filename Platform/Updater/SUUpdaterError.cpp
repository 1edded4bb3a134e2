// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUUpdaterError.h"

#include "Localization.h"

namespace {

// The message, then the detail as a sentence of its own.
QString withDetail(const QString& message, const QString& detail)
{
    const QString sentence = detail.trimmed();
    if (sentence.isEmpty())
        return message;
    const bool ended
        = sentence.endsWith(u'.') || sentence.endsWith(u'!') || sentence.endsWith(u'?');
    return message + QLatin1Char(' ') + sentence + (ended ? QString() : QStringLiteral("."));
}

const char* const nothingInstalled = "Nothing was installed.";

}

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
    case MalformedFeed:
        return withDetail(
            NSLocalizedString("The update information from the server could not be read."), detail);
    case DownloadFailed:
        return withDetail(NSLocalizedString("The update could not be downloaded."), detail)
            + QLatin1Char(' ') + NSLocalizedString(nothingInstalled);
    case NoPublicKey:
        return NSLocalizedString("This copy of the application has no key to check updates "
                                 "with, so it cannot install them. Download the new version "
                                 "from the website instead.");
    case SignatureMissing:
        return NSLocalizedString("The update is not signed, so it cannot be trusted. %1")
            .arg(NSLocalizedString(nothingInstalled));
    case SignatureInvalid:
        return NSLocalizedString("The update's signature is not valid: the download is damaged "
                                 "or does not come from the developer. %1")
            .arg(NSLocalizedString(nothingInstalled));
    case LengthMismatch:
        return withDetail(NSLocalizedString("The downloaded update does not have the size the "
                                            "update server announced."),
                   detail)
            + QLatin1Char(' ') + NSLocalizedString(nothingInstalled);
    case ArchiveRefused:
        return withDetail(NSLocalizedString("The update was refused."), detail) + QLatin1Char(' ')
            + NSLocalizedString(nothingInstalled);
    case InstallFailed:
        return withDetail(NSLocalizedString("The update could not be installed; the version you "
                                            "have is still in place."),
            detail);
    case RelaunchFailed:
        return withDetail(NSLocalizedString("The new version did not start, so the version you "
                                            "have was put back."),
            detail);
    case AuthorizationCanceled:
        return NSLocalizedString("The update was not installed, because administrator rights "
                                 "were not given.");
    case Canceled:
        return NSLocalizedString("The update was canceled.");
    }
    return {};
}
