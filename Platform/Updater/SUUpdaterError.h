// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Why an update check or installation failed, with the text shown to the user.
struct SUUpdaterError {
    enum Kind {
        NoFeedURL, // no feed address is configured
        NoNetwork, // the server could not be reached at all
        TimedOut, // the server did not answer within the time limit
        ServerError, // the server answered with an HTTP error status
        MalformedFeed, // the answer is not a usable update feed
        DownloadFailed, // the update's archive could not be downloaded completely
        NoPublicKey, // the running bundle has no usable "SUPublicEDKey"
        SignatureMissing, // the feed gives no signature for the archive
        SignatureInvalid, // the signature does not match the archive and the key
        LengthMismatch, // the archive is not as long as the feed says
        ArchiveRefused, // the archive is damaged, unsafe, or does not hold a newer copy of us
        InstallFailed, // the bundle could not be replaced; the old one is in place
        RelaunchFailed, // the new copy did not start; the old one was put back
        AuthorizationCanceled, // the administrator password was not given
        Canceled, // the user canceled the download or installation
    };

    Kind kind = NoNetwork;
    // What went wrong underneath (the network layer's text, the HTTP status, the parser's
    // complaint, the archive entry that was refused); part of the message and of the log line.
    QString detail;
    int httpStatus = 0;

    // A sentence for people, localised: what failed and, where there is one, what to do.
    QString localizedDescription() const;
};
