// SPDX-License-Identifier: GPL-3.0-or-later
#include "QLGenerators.h"

#include "FakeGenerator.h"
#include "TestEnvironment.h"

#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

const QString illustrator = QStringLiteral("com.adobe.illustrator.ai-image");
const QString swatches = QStringLiteral("com.adobe.ase-file");

QString bundleName(const std::optional<QLGenerator>& generator)
{
    return generator ? QFileInfo(generator->bundlePath).fileName() : QStringLiteral("(none)");
}

// The user's folder comes before the machine's one, and only a generator that lists the type is
// taken for it. Bundles without usable information are passed over.
TEST(GeneratorDiscovery, LooksInTheUsersFolderFirstForTheType)
{
    FakeGenerator::install(
        TestEnvironment::userLibrary(), QStringLiteral("Swatches"), { swatches }, "exit 0");
    FakeGenerator::install(TestEnvironment::localLibrary(), QStringLiteral("Drawings"),
        { swatches, illustrator }, "exit 0");
    TestEnvironment::writeFile(TestEnvironment::userLibrary()
            + QStringLiteral("/QuickLook/Damaged.qlgenerator/Contents/Info.plist"),
        "<plist");
    // An executable name must not lead out of the bundle.
    FakeGenerator::install(TestEnvironment::userLibrary(), QStringLiteral("Escaping"),
        { illustrator }, "exit 0",
        { { QStringLiteral("CFBundleExecutable"), QStringLiteral("../../x") } });

    const QList<QLGenerator> generators = QLGenerators::installedGenerators();
    ASSERT_EQ(generators.size(), 2) << "a damaged or escaping bundle was taken";
    EXPECT_EQ(generators.first().executablePath,
        generators.first().bundlePath + QStringLiteral("/Contents/Linux/Swatches"));
    EXPECT_EQ(bundleName(QLGenerators::generatorForType(illustrator, generators)),
        QStringLiteral("Drawings.qlgenerator"));
    EXPECT_EQ(bundleName(QLGenerators::generatorForType(swatches, generators)),
        QStringLiteral("Swatches.qlgenerator"));
    EXPECT_EQ(
        QLGenerators::generatorForType(QStringLiteral("com.adobe.pdf"), generators), std::nullopt);
}

}
