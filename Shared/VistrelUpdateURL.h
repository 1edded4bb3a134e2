// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>
#include <optional>

// The update request of the generator's own update check: one GET to the maker's update CGI that
// describes the installed generator (name, version, release, stage) and the machine (platform,
// system version, byte order, language). Only spaces are escaped (as %20): any other character of
// a value goes into the URL as it is, and a missing value as "(null)".
//
// These functions build it from the generator's information dictionary as VistrelUtilities keeps
// it for the life of the process; VistrelAutoUpdate has methods that look it up afresh.

// updates.tolvane.example, or the host (or host:port) that TOLVANE_UPDATE_HOST names, for
// staging servers and tests.
QString VTUpdateHost();
// http://HOST/cgi-bin/software/softwareupdate.cgi?su_ver=1.0&app=...&lang=en
QString VTUpdateURLString();
// The base URL followed by "&form=XML": the form that asks for a property-list answer.
QString VTUpdateURLStringForXML();
// The base URL followed by "&form=HTTP&ref=quicklook": the update page, for a preview's link.
QString VTUpdateURLStringForHTTP();

// The base URL for a host and a generator's information dictionary (none when no generator is
// installed). The system version is the 'sysv' enquiry in upper-case hexadecimal ("1068" for
// 10.6.8).
QString VTUpdateURLStringWithHost(const QString& host, const std::optional<QVariantMap>& info);
