// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUUpdaterDelegate.h"
#include "SUUserDriver.h"

#include <QStringList>
#include <optional>
#include <stdexcept>

// Records what the updater asks to show, in order: "notFound", "found", "error".
class RecordingUserDriver : public SUUserDriver {
public:
    void showUpdateNotFound(const QString& currentVersion) override
    {
        calls.append("notFound");
        upToDateVersion = currentVersion;
    }
    void showUpdateFound(const SUUpdateFound& update) override
    {
        calls.append("found");
        found = update;
    }
    void showUpdaterError(const SUUpdaterError& updaterError) override
    {
        calls.append("error");
        error = updaterError;
    }

    QStringList calls;
    QString upToDateVersion;
    std::optional<SUUpdateFound> found;
    std::optional<SUUpdaterError> error;
};

// Gives fixed feed parameters (or throws, like a delegate that fails half-way) and records the
// outcomes it hears of: "valid", "none", "abort".
class RecordingDelegate : public SUUpdaterDelegate {
public:
    QList<QVariantMap> feedParametersForUpdater(SUUpdater*, bool sendingSystemProfile) override
    {
        ++parameterRequests;
        sentProfile = sendingSystemProfile;
        if (throws)
            throw std::out_of_range("index 0 beyond bounds for empty array");
        return parameters;
    }
    void didFindValidUpdate(SUUpdater*, const SUAppcastItem& item) override
    {
        outcomes.append("valid:" + item.versionString);
    }
    void updaterDidNotFindUpdate(SUUpdater*) override { outcomes.append("none"); }
    void didAbortWithError(SUUpdater*, const SUUpdaterError&) override { outcomes.append("abort"); }

    QList<QVariantMap> parameters;
    bool throws = false;
    int parameterRequests = 0;
    bool sentProfile = true;
    QStringList outcomes;
};
