// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QUrl>
#include <optional>

// Fetching a resource and waiting for it.
namespace URLConnection {

// GETs the URL (redirects followed, no cache) and returns the body of a 2xx answer. Nothing on any
// failure: the server unreachable, an HTTP error status, or no complete answer within the time
// limit. The calling thread's event loop keeps running meanwhile, so windows stay responsive.
std::optional<QByteArray> sendSynchronousRequest(const QUrl& url, int timeLimitMilliseconds);

}
