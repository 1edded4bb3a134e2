// SPDX-License-Identifier: GPL-3.0-or-later
// tolvane-update-installer BUNDLE ARCHIVE SIGNATURE LENGTH
//
// Replaces BUNDLE with the copy that ARCHIVE holds. It runs as the user, or as root through the
// privileged executor when the user cannot write the bundle's folder, and talks with the
// application in lines. It verifies the archive again (length, and the signature against the
// "SUPublicEDKey" of BUNDLE, never one given to it), so that what it unpacks as root is what was
// signed, then prepares and answers
//     ready VERSION            or   error KIND MESSAGE (and ends with status 1)
// and then follows commands on its standard input:
//     install   ->  installed      the new copy is in place, the old one kept
//     commit    ->  committed      the old copy is removed; the end
//     rollback  ->  restored       the old copy is back; the end
// The end of its input before "commit" rolls back, so an application that dies leaves its
// bundle as it was. KIND is the number of an SUUpdaterError kind.
#include "Bundle.h"
#include "SUArchiveVerification.h"
#include "SUBundleInstaller.h"

#include <QCoreApplication>
#include <iostream>
#include <string>

namespace {

int reportError(SUUpdaterError::Kind kind, const QString& message)
{
    std::cout << "error " << int(kind) << ' ' << message.simplified().toStdString() << std::endl;
    return 1;
}

void say(const std::string& line) { std::cout << line << std::endl; }

}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 5) {
        std::cerr << "usage: tolvane-update-installer BUNDLE ARCHIVE SIGNATURE LENGTH\n";
        return 2;
    }
    const QString target = arguments[1];
    const auto bundle = Bundle::bundleWithPath(target);
    if (!bundle)
        return reportError(SUUpdaterError::InstallFailed, target + QStringLiteral(" is gone."));

    const SUMappedArchive archive(arguments[2]);
    if (!archive.isOpen())
        return reportError(SUUpdaterError::DownloadFailed, archive.errorString());
    const QString publicKey
        = bundle->objectForInfoDictionaryKey(QStringLiteral("SUPublicEDKey")).toString();
    if (const auto problem
        = SUVerifyArchive(archive.data(), arguments[4].toLongLong(), arguments[3], publicKey))
        return reportError(problem->kind, problem->detail);

    SUBundleInstaller::removeLeftovers(target);
    SUBundleInstaller installer(target);
    QString error;
    if (!installer.prepare(archive.data(), &error))
        return reportError(SUUpdaterError::ArchiveRefused, error);
    say("ready " + installer.preparedVersion().toStdString());

    std::string command;
    while (std::getline(std::cin, command)) {
        if (command == "install") {
            if (!installer.install(&error))
                return reportError(SUUpdaterError::InstallFailed, error);
            say("installed");
        } else if (command == "commit") {
            if (!installer.commit(&error))
                return reportError(SUUpdaterError::InstallFailed, error);
            say("committed");
            return 0;
        } else if (command == "rollback") {
            if (!installer.rollback(&error))
                return reportError(SUUpdaterError::InstallFailed, error);
            say("restored");
            return 0;
        }
    }
    return 0;
}
