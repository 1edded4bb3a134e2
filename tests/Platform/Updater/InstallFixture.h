// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "HttpTestServer.h"
#include "RecordingUserDriver.h"
#include "SUEd25519.h"
#include "SUUpdater.h"
#include "TestEnvironment.h"
#include "UpdateArchives.h"
#include "UserDefaults.h"

#include <gtest/gtest.h>
#include <memory>

// Tolvane.app 100 in a temporary Applications folder, signed updates from keys made here, a feed
// and its archives on a server on 127.0.0.1, and an updater that installs with the real installer
// program. The bundles' executables only note that they started.
class InstallFixture : public testing::Test {
public:
    void SetUp() override;

    // The .tar.xz archive of a bundle with the given identifier and version (a copy of Tolvane 2.0
    // unless told otherwise).
    QByteArray archiveOf(
        const QString& version = "200", const QString& identifier = "app.tolvane.Tolvane");
    // Serves the archive and a feed that offers it, signed and with its length.
    void publish(const QByteArray& archive);
    static QByteArray startedScript(const QByteArray& which);

    // Which copy started: "new", "old", or nothing.
    QString started() const;
    // The folders and files that an installation may leave beside the bundle and in the
    // download folder.
    QStringList leftovers() const;
    QString installedVersion() const;

    HttpTestServer server;
    RecordingUserDriver driver;
    SUEd25519::KeyPair keys;
    QString applications;
    QString bundle;
    QString oldFingerprint;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<SUUpdater> updater;
    std::optional<SUUpdaterError> failure;
};
