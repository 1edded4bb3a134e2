// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUUpdateDriver.h"

#include "Bundle.h"
#include "SUArchiveVerification.h"
#include "SUDownloader.h"
#include "SUInstallerConnection.h"
#include "Workspace.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusServiceWatcher>
#include <QDir>
#include <QFile>
#include <csignal>

namespace {

// A process that ended, also one that nobody has reaped yet, is not running.
bool processRuns(qint64 processId)
{
    QFile stat(QStringLiteral("/proc/%1/stat").arg(processId));
    if (!stat.open(QIODevice::ReadOnly))
        return false;
    const QByteArray line = stat.readAll();
    const qsizetype afterName = line.lastIndexOf(')');
    return afterName > 0 && line.mid(afterName + 2, 1) != "Z";
}

QString lockPath(const QString& downloadFolder)
{
    return QDir::cleanPath(downloadFolder) + QStringLiteral(".lock");
}

}

SUUpdateDriver::SUUpdateDriver(
    QNetworkAccessManager& network, SUInstallHost host, SUAppcastItem item, QObject* parent)
    : QObject(parent)
    , m_network(network)
    , m_host(std::move(host))
    , m_item(std::move(item))
    , m_lock(lockPath(m_host.downloadFolder))
{
    m_newCopyWatch.setInterval(200);
    connect(&m_newCopyWatch, &QTimer::timeout, this, &SUUpdateDriver::newCopyCheck);
    m_relaunchDeadline.setSingleShot(true);
    connect(&m_relaunchDeadline, &QTimer::timeout, this, [this] {
        if (m_newCopyProcess > 0)
            ::kill(pid_t(m_newCopyProcess), SIGTERM);
        relaunchFailedWith(QStringLiteral("It did not start in time."));
    });
}

SUUpdateDriver::~SUUpdateDriver()
{
    delete m_downloader.data();
    m_installer.reset();
    if (!m_archivePath.isEmpty())
        QFile::remove(m_archivePath);
}

void SUUpdateDriver::removeUnfinishedDownloads(const QString& downloadFolder)
{
    QLockFile lock(lockPath(downloadFolder));
    if (lock.tryLock(0))
        QDir(downloadFolder).removeRecursively();
}

void SUUpdateDriver::setStage(Stage stage)
{
    m_stage = stage;
    emit stageChanged(stage);
}

void SUUpdateDriver::start()
{
    setStage(Stage::Downloading);
    // What can be refused without downloading is refused at once.
    const auto bundle = Bundle::bundleWithPath(m_host.bundlePath);
    const QString publicKey = bundle
        ? bundle->objectForInfoDictionaryKey(QStringLiteral("SUPublicEDKey")).toString()
        : QString();
    if (const auto problem = SUVerifyArchive({}, 0, m_item.edSignature, publicKey);
        problem && problem->kind != SUUpdaterError::SignatureInvalid) {
        finishWith(problem);
        return;
    }
    if (!m_item.fileURL.isValid() || m_item.fileURL.isRelative()) {
        finishWith(SUUpdaterError { SUUpdaterError::DownloadFailed,
            QStringLiteral("The update feed names no file to download.") });
        return;
    }
    if (!QDir().mkpath(m_host.downloadFolder) || !m_lock.tryLock(0)) {
        finishWith(SUUpdaterError { SUUpdaterError::DownloadFailed,
            QStringLiteral("Another update is being downloaded.") });
        return;
    }
    m_downloader = new SUDownloader(m_network, this);
    connect(m_downloader, &SUDownloader::progress, this, &SUUpdateDriver::downloadProgress);
    connect(m_downloader, &SUDownloader::finished, this, &SUUpdateDriver::downloadFinished);
    m_downloader->start(
        m_item.fileURL, m_host.downloadFolder, m_item.contentLength, m_host.stallTimeoutMs);
}

void SUUpdateDriver::downloadFinished(const std::optional<SUUpdaterError>& error)
{
    m_downloader->deleteLater();
    if (error) {
        finishWith(error);
        return;
    }
    m_archivePath = m_downloader->filePath();

    setStage(Stage::Verifying);
    {
        const SUMappedArchive archive(m_archivePath);
        const auto bundle = Bundle::bundleWithPath(m_host.bundlePath);
        const QString publicKey = bundle
            ? bundle->objectForInfoDictionaryKey(QStringLiteral("SUPublicEDKey")).toString()
            : QString();
        const auto problem = archive.isOpen()
            ? SUVerifyArchive(archive.data(), m_item.contentLength, m_item.edSignature, publicKey)
            : SUUpdaterError { SUUpdaterError::DownloadFailed, archive.errorString() };
        if (problem) {
            finishWith(problem);
            return;
        }
    }

    setStage(Stage::Preparing);
    m_installer = std::make_unique<SUInstallerConnection>(m_host.installerPath, m_host.executor);
    connect(m_installer.get(), &SUInstallerConnection::ready, this, [this] {
        setStage(Stage::Ready);
        emit readyToInstall();
    });
    connect(
        m_installer.get(), &SUInstallerConnection::installed, this, &SUUpdateDriver::launchNewCopy);
    connect(m_installer.get(), &SUInstallerConnection::finished, this, [this] {
        if (m_rollbackReason) {
            finishWith(m_rollbackReason);
            return;
        }
        finishWith(std::nullopt);
        emit relaunched();
    });
    connect(m_installer.get(), &SUInstallerConnection::failed, this,
        [this](const SUUpdaterError& error) { finishWith(error); });
    m_installer->start(m_host.bundlePath, m_archivePath, m_item.edSignature, m_item.contentLength);
}

void SUUpdateDriver::cancel()
{
    switch (m_stage) {
    case Stage::Downloading:
        if (m_downloader)
            m_downloader->cancel();
        break;
    case Stage::Verifying:
    case Stage::Preparing:
    case Stage::Ready:
        // The installer's input ends: it removes what it unpacked.
        m_installer.reset();
        finishWith(SUUpdaterError { SUUpdaterError::Canceled, {} });
        break;
    default:
        break;
    }
}

void SUUpdateDriver::installAndRelaunch()
{
    if (m_stage != Stage::Ready)
        return;
    setStage(Stage::Installing);
    m_installer->install();
}

void SUUpdateDriver::launchNewCopy()
{
    setStage(Stage::Relaunching);
    emit willRelaunch();
    if (!NSWorkspace::sharedWorkspace().launchApplication(
            m_host.bundlePath, {}, &m_newCopyProcess)) {
        relaunchFailedWith(QStringLiteral("It could not be started."));
        return;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (m_host.busName.isEmpty() || !bus.isConnected()) {
        m_installer->commit();
        return;
    }
    m_busWatcher = std::make_unique<QDBusServiceWatcher>(
        m_host.busName, bus, QDBusServiceWatcher::WatchForRegistration);
    connect(m_busWatcher.get(), &QDBusServiceWatcher::serviceRegistered, this,
        &SUUpdateDriver::newCopyCheck);
    m_newCopyWatch.start();
    m_relaunchDeadline.start(m_host.relaunchTimeoutMs);
    newCopyCheck();
}

void SUUpdateDriver::newCopyCheck()
{
    if (m_stage != Stage::Relaunching || !m_newCopyWatch.isActive())
        return;
    QDBusConnectionInterface* bus = QDBusConnection::sessionBus().interface();
    const auto owner = bus->servicePid(m_host.busName);
    if (owner.isValid() && qint64(owner.value()) == m_newCopyProcess) {
        m_newCopyWatch.stop();
        m_relaunchDeadline.stop();
        m_installer->commit();
        return;
    }
    if (!processRuns(m_newCopyProcess))
        relaunchFailedWith(QStringLiteral("It ended right after it started."));
}

void SUUpdateDriver::relaunchFailedWith(const QString& detail)
{
    m_newCopyWatch.stop();
    m_relaunchDeadline.stop();
    m_rollbackReason = SUUpdaterError { SUUpdaterError::RelaunchFailed, detail };
    m_installer->rollback();
}

bool SUUpdateDriver::installNow(SUUpdaterError* error)
{
    if (m_stage != Stage::Ready) {
        if (error)
            *error = { SUUpdaterError::InstallFailed, QStringLiteral("No update is ready.") };
        return false;
    }
    setStage(Stage::Installing);
    const bool installed = m_installer->installAndCommitNow(error);
    m_installer.reset();
    finishWith(std::nullopt);
    return installed;
}

void SUUpdateDriver::finishWith(const std::optional<SUUpdaterError>& error)
{
    if (m_stage == Stage::Done)
        return;
    m_newCopyWatch.stop();
    m_relaunchDeadline.stop();
    m_busWatcher.reset();
    // This may run inside a signal of the installer connection: it goes once that has returned.
    if (m_installer)
        m_installer.release()->deleteLater();
    if (!m_archivePath.isEmpty())
        QFile::remove(m_archivePath);
    m_archivePath.clear();
    m_lock.unlock();
    setStage(Stage::Done);
    if (error)
        emit failed(*error);
}
