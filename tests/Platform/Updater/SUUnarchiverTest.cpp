// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUUnarchiver.h"

#include "TestEnvironment.h"
#include "UpdateArchives.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

using UpdateArchives::Entry;
using UpdateArchives::Format;

QString freshFolder(const QString& name)
{
    const QString folder = TestEnvironment::home() + "/" + name;
    QDir().mkpath(folder);
    return folder;
}

class UnpackFormat : public testing::TestWithParam<Format> { };

TEST_P(UnpackFormat, KeepsFilesFoldersLinksAndExecutableBits)
{
    const QString source = freshFolder("source") + "/Tolvane.app";
    UpdateArchives::makeBundle(source, "app.tolvane.Tolvane", "200", "#!/bin/sh\nexit 0\n");
    TestEnvironment::writeFile(source + "/Contents/Resources/Grüße.txt", "text");
    QDir().mkpath(source + "/Contents/Resources/empty");
    QFile::link("../Resources/Grüße.txt", source + "/Contents/Linux/notes");

    const QString target = freshFolder("target");
    QString error;
    ASSERT_TRUE(SUUnarchiver::unpack(
        UpdateArchives::pack(UpdateArchives::entriesOf(source), GetParam()), target, &error))
        << error.toStdString();
    EXPECT_EQ(
        UpdateArchives::fingerprint(target + "/Tolvane.app"), UpdateArchives::fingerprint(source));
    EXPECT_TRUE(QFileInfo(target + "/Tolvane.app/Contents/Linux/run").isExecutable());
}

INSTANTIATE_TEST_SUITE_P(
    Archives, UnpackFormat, testing::Values(Format::TarXz, Format::TarGz, Format::Zip));

struct HostileCase {
    const char* name;
    QList<Entry> entries;
    // Zip has no hard links.
    QList<Format> formats { Format::TarGz, Format::Zip };
};
void PrintTo(const HostileCase& value, std::ostream* out) { *out << value.name; }

class HostileArchive : public testing::TestWithParam<HostileCase> { };

// Each archive tries to write "escaped" beside the folder, or to leave a way out of it.
TEST_P(HostileArchive, IsRefusedAndWritesNothingOutsideItsFolder)
{
    const QString target = freshFolder("inside/target");
    for (const Format format : GetParam().formats) {
        QString error;
        EXPECT_FALSE(
            SUUnarchiver::unpack(UpdateArchives::pack(GetParam().entries, format), target, &error));
        EXPECT_FALSE(error.isEmpty());
        EXPECT_FALSE(QFileInfo::exists(TestEnvironment::home() + "/inside/escaped"));
        EXPECT_FALSE(QFileInfo::exists(TestEnvironment::home() + "/escaped"));
        QDir(target).removeRecursively();
        QDir().mkpath(target);
    }
}

INSTANTIATE_TEST_SUITE_P(Entries, HostileArchive,
    testing::Values(HostileCase { "DotDot", { { "Tolvane.app/../../escaped", "x" } } },
        HostileCase {
            "AbsolutePath", { { QFile::encodeName(TestEnvironment::home()) + "/escaped", "x" } } },
        HostileCase { "LinkOut",
            { { "Tolvane.app", {}, Entry::Folder, 0755 },
                { "Tolvane.app/out", "../../escaped", Entry::SymbolicLink } } },
        HostileCase { "AbsoluteLink", { { "out", "/etc", Entry::SymbolicLink } } },
        HostileCase { "ThroughALinkInside",
            { { "sub", {}, Entry::Folder, 0755 }, { "link", "sub", Entry::SymbolicLink },
                { "link/file", "x" } } },
        HostileCase {
            "HardLinkOut", { { "escaped", "../escaped", Entry::HardLink } }, { Format::TarGz } }),
    [](const auto& info) { return std::string(info.param.name); });

}
