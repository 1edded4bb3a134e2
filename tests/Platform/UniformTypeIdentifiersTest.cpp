// SPDX-License-Identifier: GPL-3.0-or-later
#include "UniformTypeIdentifiers.h"

#include "TestEnvironment.h"

#include <gtest/gtest.h>

namespace {

QVariantMap declaring(const char* key, const QString& identifier, const QVariant& extensions)
{
    const QVariantMap declaration { { QStringLiteral("UTTypeIdentifier"), identifier },
        { QStringLiteral("UTTypeTagSpecification"),
            QVariantMap { { QStringLiteral("public.filename-extension"), extensions } } } };
    return { { QString::fromLatin1(key), QVariantList { declaration } } };
}

// The identifiers that the original platform gives these extensions; others, whatever their
// case and bytes, decode back to themselves.
TEST(DynamicIdentifierForms, AreMadeFromTheExtensionAndDecodeBack)
{
    for (const auto& [extension, identifier] :
        { std::pair { QStringLiteral("ait"), QStringLiteral("dyn.ah62d4rv4ge80c4py") },
            std::pair { QStringLiteral("indd"), QStringLiteral("dyn.ah62d4rv4ge80w5xequ") },
            std::pair { QStringLiteral("0"), QStringLiteral("dyn.ah62d4rv4ge8xa") } }) {
        EXPECT_EQ(UTType::identifierForExtension(extension, {}), identifier);
        EXPECT_EQ(UTType::decodeDynamicIdentifier(identifier), "?0=6:1=" + extension);
    }
    EXPECT_NE(UTType::dynamicIdentifierForExtension(QStringLiteral("AIT")),
        UTType::dynamicIdentifierForExtension(QStringLiteral("ait")));
    for (const QString& extension :
        { QStringLiteral("AIT"), QStringLiteral("tar.gz"), QStringLiteral("ünï"), QString() }) {
        const QString identifier = UTType::dynamicIdentifierForExtension(extension);
        EXPECT_EQ(UTType::extensionOfDynamicIdentifier(identifier), extension);
    }
}

// Whatever the case of the extension; the first dictionary first, its imported types before its
// exported ones.
TEST(DeclaredTypes, WinOverTheDynamicIdentifierInOrder)
{
    QVariantMap app = declaring(
        "UTExportedTypeDeclarations", QStringLiteral("app.exported"), QStringLiteral("ase"));
    app.insert(declaring("UTImportedTypeDeclarations", QStringLiteral("app.imported"),
        QVariantList { QStringLiteral("x"), QStringLiteral("ase") }));
    const QVariantMap generator = declaring(
        "UTExportedTypeDeclarations", QStringLiteral("generator.type"), QStringLiteral("ase"));
    EXPECT_EQ(UTType::identifierForExtension(QStringLiteral("ASE"), { app, generator }),
        QStringLiteral("app.imported"));
    EXPECT_EQ(UTType::identifierForExtension(QStringLiteral("ase"), { generator, app }),
        QStringLiteral("generator.type"));
    EXPECT_EQ(UTType::identifierForExtension(QStringLiteral("indd"), { app }),
        QStringLiteral("dyn.ah62d4rv4ge80w5xequ"));
}

}
