// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUAppcastItem.h"
#include "SUUpdaterError.h"

#include <QLockFile>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <memory>
#include <optional>

class PrivilegedExecutor;
class QDBusServiceWatcher;
class QNetworkAccessManager;
class SUDownloader;
class SUInstallerConnection;

// Where an update goes and what installs it.
struct SUInstallHost {
    // The bundle to replace: the running application's.
    QString bundlePath;
    // tolvane-update-installer.
    QString installerPath;
    // Where archives are downloaded to; emptied at every start of the updater.
    QString downloadFolder;
    // The session-bus name the new copy takes once it runs; empty when there is no session bus,
    // and then a copy that started counts as running.
    QString busName;
    // Runs the installer as root, for a bundle whose folder the user cannot write; none
    // otherwise.
    const PrivilegedExecutor* executor = nullptr;
    // How long a server may send nothing during the download.
    int stallTimeoutMs = 30000;
    // How long the new copy may take to start.
    int relaunchTimeoutMs = 120000;
};

// Installs one update, in steps: download (with progress), verify (length and signature, before
// anything is touched), prepare (the installer unpacks beside the bundle and checks what it got),
// then either install and relaunch (the old process keeps running, without its bus name, until the
// new copy has taken it; a copy that does not start is replaced by the old one again), or install
// when the application quits. Every step may fail; the old bundle then stays as it was and nothing
// of the attempt is left behind.
class SUUpdateDriver : public QObject {
    Q_OBJECT
public:
    enum class Stage {
        Idle,
        Downloading,
        Verifying,
        Preparing,
        Ready,
        Installing,
        Relaunching,
        Done
    };

    SUUpdateDriver(QNetworkAccessManager& network, SUInstallHost host, SUAppcastItem item,
        QObject* parent = nullptr);
    ~SUUpdateDriver() override;

    const SUAppcastItem& item() const { return m_item; }
    Stage stage() const { return m_stage; }

    // Downloads, verifies and prepares; ends with readyToInstall() or failed().
    void start();
    // Until the installation begins: stops and ends with failed() of kind Canceled.
    void cancel();
    // Once ready: ends with relaunched() (the process should end now) or failed().
    void installAndRelaunch();
    // Once ready, at the end of the process: installs without relaunching, waiting for it.
    bool installNow(SUUpdaterError* error);

    // Clears what an earlier process left in the download folder, unless a driver of another
    // process is at work there.
    static void removeUnfinishedDownloads(const QString& downloadFolder);

signals:
    void stageChanged(Stage stage);
    void downloadProgress(qint64 received, qint64 total);
    void readyToInstall();
    // The bundle was replaced and the new copy is about to start: give up the bus name.
    void willRelaunch();
    void relaunched();
    // The update was not installed (after willRelaunch(): take the bus name back).
    void failed(const SUUpdaterError& error);

private:
    void setStage(Stage stage);
    void downloadFinished(const std::optional<SUUpdaterError>& error);
    void launchNewCopy();
    void newCopyCheck();
    void relaunchFailedWith(const QString& detail);
    void finishWith(const std::optional<SUUpdaterError>& error);

    QNetworkAccessManager& m_network;
    SUInstallHost m_host;
    SUAppcastItem m_item;
    Stage m_stage = Stage::Idle;
    QLockFile m_lock;
    QPointer<SUDownloader> m_downloader;
    QString m_archivePath;
    std::unique_ptr<SUInstallerConnection> m_installer;
    qint64 m_newCopyProcess = 0;
    QTimer m_newCopyWatch;
    QTimer m_relaunchDeadline;
    std::unique_ptr<QDBusServiceWatcher> m_busWatcher;
    std::optional<SUUpdaterError> m_rollbackReason;
};
