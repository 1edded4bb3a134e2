// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QVariantMap>

class SUUpdater;
struct SUAppcastItem;
struct SUUpdaterError;

// What the application tells the updater and hears from it. Every method is optional.
class SUUpdaterDelegate {
public:
    virtual ~SUUpdaterDelegate() = default;

    // Extra parameters for the feed request, asked for on every check. Each dictionary holds a
    // "key" and a "value" (both text); they are appended to the feed address's query, each name
    // and value percent-encoded. sendingSystemProfile tells whether the updater sends its own
    // profile of the machine as well.
    virtual QList<QVariantMap> feedParametersForUpdater(
        SUUpdater* updater, bool sendingSystemProfile)
    {
        Q_UNUSED(updater);
        Q_UNUSED(sendingSystemProfile);
        return {};
    }

    // The feed offers a version newer than the running one.
    virtual void didFindValidUpdate(SUUpdater* updater, const SUAppcastItem& item)
    {
        Q_UNUSED(updater);
        Q_UNUSED(item);
    }

    // The feed offers nothing newer.
    virtual void updaterDidNotFindUpdate(SUUpdater* updater) { Q_UNUSED(updater); }

    // The check failed.
    virtual void didAbortWithError(SUUpdater* updater, const SUUpdaterError& error)
    {
        Q_UNUSED(updater);
        Q_UNUSED(error);
    }
};
