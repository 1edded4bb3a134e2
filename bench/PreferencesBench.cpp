// SPDX-License-Identifier: GPL-3.0-or-later
// Reading the merged preview settings, against a plain read of the same property-list file.
#include "BenchmarkRatio.h"
#include "PropertyList.h"
#include "VistrelUtilities.h"

#include <QCoreApplication>
#include <QTemporaryDir>

int main(int argc, char** argv)
{
    QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    QCoreApplication application(argc, argv);

    QVariantMap settings = VTDefaults();
    settings.insert(QStringLiteral("Preferences Version"), QStringLiteral("2.0"));
    settings.insert(QStringLiteral("Unknown"), QStringLiteral("pruned"));
    if (!PropertyList::writeXmlAtomically(settings, VTPreferencesPath()))
        return 1;

    const double plain = BenchmarkRatio::bestNanoseconds(
        [] { PropertyList::readDictionary(VTPreferencesPath()); }, 2000);
    const double merged = BenchmarkRatio::bestNanoseconds([] { VTUserDefaults(); }, 2000);
    BenchmarkRatio::report("VTUserDefaults", merged, "plain property-list read", plain);
    return 0;
}
