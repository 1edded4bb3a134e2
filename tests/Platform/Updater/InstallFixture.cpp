// SPDX-License-Identifier: GPL-3.0-or-later
#include "InstallFixture.h"

#include "Bundle.h"

#include <QDir>
#include <QTemporaryDir>

void InstallFixture::SetUp()
{
    keys = SUEd25519::generateKeyPair();
    applications = TestEnvironment::home() + "/Applications";
    bundle = applications + "/Tolvane.app";
    UpdateArchives::makeBundle(bundle, "app.tolvane.Tolvane", "100", startedScript("old"),
        { { "SUPublicEDKey", QString::fromLatin1(keys.publicKey.toBase64()) } });
    oldFingerprint = UpdateArchives::fingerprint(bundle);

    static int domainNumber = 0;
    defaults = std::make_unique<UserDefaults>(
        QStringLiteral("app.tolvane.InstallTest%1").arg(++domainNumber));
    updater = std::make_unique<SUUpdater>(*defaults, "100");
    updater->setFeedURL(server.url("/appcast.xml"));
    updater->setHostSystemVersion("6.1.0");
    updater->setHostBundlePath(bundle);
    updater->setInstallerPath(QStringLiteral(TOLVANE_UPDATE_INSTALLER));
    updater->setDownloadFolder(TestEnvironment::home() + "/cache/Updates");
    updater->setUserDriver(&driver);
    driver.answer = SUUpdateAlertChoice::Install;
    QObject::connect(updater.get(), &SUUpdater::updateInstallationFailed,
        [this](const SUUpdaterError& error) { failure = error; });
}

QByteArray InstallFixture::startedScript(const QByteArray& which)
{
    return "#!/bin/sh\necho " + which
        + " > \"$HOME/started.part\"\n"
          "mv \"$HOME/started.part\" \"$HOME/started\"\n";
}

QByteArray InstallFixture::archiveOf(const QString& version, const QString& identifier)
{
    QTemporaryDir folder(TestEnvironment::home() + "/release-XXXXXX");
    const QString copy = folder.path() + "/Tolvane.app";
    UpdateArchives::makeBundle(copy, identifier, version, startedScript("new"),
        { { "SUPublicEDKey", QString::fromLatin1(keys.publicKey.toBase64()) } });
    TestEnvironment::writeFile(
        copy + "/Contents/Resources/notes.txt", "version " + version.toUtf8());
    return UpdateArchives::pack(UpdateArchives::entriesOf(copy), UpdateArchives::Format::TarXz);
}

void InstallFixture::publish(const QByteArray& archive)
{
    server.respondTo("/Tolvane-2.0.tar.xz", { 200, archive });
    server.respond({ 200,
        QStringLiteral("<?xml version=\"1.0\"?>\n"
                       "<rss version=\"2.0\" "
                       "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">"
                       "<channel><item><title>Version 2.0</title>"
                       "<sparkle:version>200</sparkle:version>"
                       "<sparkle:shortVersionString>2.0</sparkle:shortVersionString>"
                       "<enclosure url=\"%1\" length=\"%2\" type=\"application/x-xz\" "
                       "sparkle:edSignature=\"%3\"/>"
                       "</item></channel></rss>\n")
            .arg(server.url("/Tolvane-2.0.tar.xz").toString())
            .arg(archive.size())
            .arg(QString::fromLatin1(SUEd25519::sign(keys.secretKey, archive).toBase64()))
            .toUtf8() });
}

QString InstallFixture::started() const
{
    return QString::fromUtf8(TestEnvironment::readFile(TestEnvironment::home() + "/started"))
        .trimmed();
}

QStringList InstallFixture::leftovers() const
{
    QStringList found
        = QDir(applications).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    found.removeOne("Tolvane.app");
    const QDir downloads(updater->downloadFolder());
    for (const QString& name : downloads.entryList(QDir::Files | QDir::Hidden))
        found.append("Updates/" + name);
    return found;
}

QString InstallFixture::installedVersion() const
{
    const auto installed = Bundle::bundleWithPath(bundle);
    return installed ? installed->objectForInfoDictionaryKey("CFBundleVersion").toString()
                     : QString();
}
