// SPDX-License-Identifier: GPL-3.0-or-later
// The update request's text, from both builders. The functions keep the generator's information
// for the life of the process, so this program installs one generator and moves it only after.
#include "PropertyList.h"
#include "TestEnvironment.h"
#include "VistrelAutoUpdate.h"
#include "VistrelUpdateURL.h"

#include <QDir>
#include <gtest/gtest.h>

namespace {

QString pluginIn(const QString& library) { return library + "/QuickLook/Vistrel Pro.qlgenerator"; }

void installPlugin(const QString& library, const QVariantMap& info)
{
    ASSERT_TRUE(PropertyList::writeXmlAtomically(info, pluginIn(library) + "/Contents/Info.plist"));
}

const QString base = "/cgi-bin/software/softwareupdate.cgi?su_ver=1.0";
const QString byteOrder = QSysInfo::ByteOrder == QSysInfo::LittleEndian ? "little" : "big";

class UpdateRequest : public testing::Test {
protected:
    void SetUp() override
    {
        qputenv("TOLVANE_SYSTEM_VERSION", "10.6.8");
        qunsetenv("TOLVANE_UPDATE_HOST");
        VistrelAutoUpdate::invalidateAutoUpdate();
    }
};

TEST_F(UpdateRequest, BothFamiliesDescribeTheGeneratorAndTheMachineWithTheirOwnSuffixes)
{
    // A value with spaces has them escaped and nothing else; a missing one prints as "(null)".
    installPlugin(TestEnvironment::userLibrary(),
        { { "CFBundleName", "Vistrel Pro" }, { "CFBundleShortVersionString", "2.1" },
            { "QXReleaseStage", "beta & more=+#" } });
    const QString expected = "http://updates.tolvane.example" + base
        + "&app=Vistrel%20Pro&ver=2.1&rel=(null)&stage=beta%20&%20more=+#&plat=MacOSX"
          "&os_ver=1068&end="
        + byteOrder + "&lang=en";

    EXPECT_EQ(VTUpdateHost(), "updates.tolvane.example");
    EXPECT_EQ(VTUpdateURLString(), expected);
    EXPECT_EQ(VTUpdateURLStringForXML(), expected + "&form=XML");
    EXPECT_EQ(VTUpdateURLStringForHTTP(), expected + "&form=HTTP&ref=quicklook");

    VistrelAutoUpdate other;
    EXPECT_EQ(other.updateHost(), "updates.tolvane.example");
    EXPECT_EQ(other.updateURLString(), expected);
    EXPECT_EQ(other.updateURLStringForXML(), expected + "&form=XML");
    EXPECT_EQ(other.updateURLStringForHTTP(), expected + "&form=HTTP&ref=menu");

    // The generator moves to the machine's Library: the methods follow, the functions do not.
    // Numbers and booleans print as the platform prints them.
    installPlugin(TestEnvironment::localLibrary(),
        { { "CFBundleName", "Vistrel" }, { "CFBundleShortVersionString", "3.0" },
            { "QXReleaseVersion", qint64(300) }, { "QXReleaseStage", true } });
    ASSERT_TRUE(QDir(pluginIn(TestEnvironment::userLibrary())).removeRecursively());
    EXPECT_EQ(other.updateURLString(),
        "http://updates.tolvane.example" + base
            + "&app=Vistrel&ver=3.0&rel=300&stage=1&plat=MacOSX&os_ver=1068&end=" + byteOrder
            + "&lang=en");
    EXPECT_EQ(VTUpdateURLString(), expected);
}

TEST_F(UpdateRequest, WithoutAGeneratorTheFieldsAreNullAndTheHostCanBeReplaced)
{
    qputenv("TOLVANE_SYSTEM_VERSION", "6.1.0");
    qputenv("TOLVANE_UPDATE_HOST", "staging.example:8080");
    EXPECT_EQ(VistrelAutoUpdate::sharedAutoUpdate()->updateURLStringForXML(),
        "http://staging.example:8080" + base
            + "&app=(null)&ver=(null)&rel=(null)&stage=(null)&plat=MacOSX&os_ver=610&end="
            + byteOrder + "&lang=en&form=XML");
}

}
