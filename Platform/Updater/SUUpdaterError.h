// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Why an update check failed, with the text shown to the user.
struct SUUpdaterError {
    enum Kind {
        NoFeedURL, // no feed address is configured
        NoNetwork, // the server could not be reached at all
        TimedOut, // the server did not answer within the time limit
        ServerError, // the server answered with an HTTP error status
        MalformedFeed, // the answer is not a usable update feed
    };

    Kind kind = NoNetwork;
    // What went wrong underneath (the network layer's text, the HTTP status, the parser's
    // complaint); part of the message and of the log line.
    QString detail;
    int httpStatus = 0;

    // A sentence for people, localised: what failed and, where there is one, what to do.
    QString localizedDescription() const;
};
