// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUUpdaterDelegate.h"
#include "SUUserDriver.h"

#include <QStringList>
#include <functional>
#include <optional>
#include <stdexcept>

// Records what the updater asks to show, in order: "notFound", "found", "error", "download",
// "status:<text>", "dismiss", "readyAtQuit" (progress is left out). It answers a found
// update and the notice of an install at quit as told.
class RecordingUserDriver : public SUUserDriver {
public:
    void showUpdateNotFound(const QString& currentVersion, const QString& text) override
    {
        calls.append("notFound");
        upToDateVersion = currentVersion;
        note = text;
    }
    void showUpdateFound(
        const SUUpdateFound& update, std::function<void(SUUpdateAlertChoice)> reply) override
    {
        calls.append("found");
        found = update;
        if (whenFound)
            whenFound();
        if (answer)
            reply(*answer);
    }
    void showUpdaterError(const SUUpdaterError& updaterError) override
    {
        calls.append("error");
        error = updaterError;
    }
    void showDownloadStarted(std::function<void()>) override { calls.append("download"); }
    void showDownloadProgress(qint64, qint64) override { }
    void showInstallStatus(const QString& status, bool) override
    {
        calls.append("status:" + status);
    }
    void dismissUpdateInstallation() override { calls.append("dismiss"); }
    void showReadyToInstallAtQuit(const SUUpdateFound& update, std::function<void(bool)>) override
    {
        calls.append("readyAtQuit");
        found = update;
    }

    QStringList calls;
    QString upToDateVersion;
    QString note;
    std::optional<SUUpdateFound> found;
    std::optional<SUUpdaterError> error;
    std::optional<SUUpdateAlertChoice> answer;
    std::function<void()> whenFound;
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
