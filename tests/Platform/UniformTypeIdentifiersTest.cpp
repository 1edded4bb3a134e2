// SPDX-License-Identifier: GPL-3.0-or-later
#include "UniformTypeIdentifiers.h"

#include "TestEnvironment.h"

#include <gtest/gtest.h>

namespace {

QVariantMap declaring(const char* key, const QString& identifier, const QVariant& extensions,
    const QString& description = {})
{
    QVariantMap declaration { { QStringLiteral("UTTypeIdentifier"), identifier },
        { QStringLiteral("UTTypeTagSpecification"),
            QVariantMap { { QStringLiteral("public.filename-extension"), extensions } } } };
    if (!description.isEmpty())
        declaration.insert(QStringLiteral("UTTypeDescription"), description);
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

TEST(DynamicIdentifierForms, OthersDoNotDecode)
{
    for (const QString& identifier : { QStringLiteral("com.adobe.pdf"),
             QStringLiteral("dyn.ah62d4rv4ge80c4p!"), QStringLiteral("dyn.ah62d4rv4ge80c4pi") }) {
        EXPECT_EQ(UTType::extensionOfDynamicIdentifier(identifier), std::nullopt)
            << identifier.toStdString();
    }
    // These decode, but are not extension tags ("hello", "?0=5:1=ait").
    EXPECT_EQ(
        UTType::decodeDynamicIdentifier(QStringLiteral("dyn.arbw025dt")), QStringLiteral("hello"));
    EXPECT_EQ(UTType::extensionOfDynamicIdentifier(QStringLiteral("dyn.arbw025dt")), std::nullopt);
    EXPECT_EQ(UTType::extensionOfDynamicIdentifier(QStringLiteral("dyn.ah62d4rm4ge80c4py")),
        std::nullopt);
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

TEST(DeclaredTypes, MalformedDeclarationsAreIgnored)
{
    const QVariantMap broken {
        { QStringLiteral("UTImportedTypeDeclarations"),
            QVariantList { QStringLiteral("not a dictionary"),
                QVariantMap { { QStringLiteral("UTTypeTagSpecification"),
                    QVariantMap {
                        { QStringLiteral("public.filename-extension"), QStringLiteral("ai") } } } },
                QVariantMap {
                    { QStringLiteral("UTTypeIdentifier"), QStringLiteral("no.tags") } } } },
        { QStringLiteral("UTExportedTypeDeclarations"), QStringLiteral("not a list") },
    };
    EXPECT_EQ(UTType::declarations(broken).size(), 1);
    EXPECT_EQ(UTType::identifierForExtension(QStringLiteral("ai"), { broken }),
        UTType::dynamicIdentifierForExtension(QStringLiteral("ai")));
}

TEST(FileIdentifiers, UseTheLastExtensionOfTheName)
{
    const QVariantMap app = declaring(
        "UTImportedTypeDeclarations", QStringLiteral("com.adobe.pdf"), QStringLiteral("pdf"));
    struct Case {
        const char* path;
        QString identifier;
    };
    const Case cases[] = {
        { "/a/b.pdf/Poster.PDF", QStringLiteral("com.adobe.pdf") },
        { "/a/archive.tar.ase", QStringLiteral("dyn.ah62d4rv4ge80c65f") },
        { "/a/.pdf", UTType::dataIdentifier },
        { "/a/trailing.", UTType::dataIdentifier },
    };
    for (const Case& c : cases)
        EXPECT_EQ(UTType::identifierForFile(QString::fromUtf8(c.path), { app }), c.identifier)
            << c.path;
}

TEST(Descriptions, DeclaredThenDocumentTypeThenWellKnown)
{
    QVariantMap app
        = declaring("UTImportedTypeDeclarations", QStringLiteral("com.example.declared"),
            QStringLiteral("dcl"), QStringLiteral("Declared Drawing"));
    app.insert(QStringLiteral("CFBundleDocumentTypes"),
        QVariantList {
            QVariantMap { { QStringLiteral("CFBundleTypeName"), QStringLiteral("Swatches") },
                { QStringLiteral("LSItemContentTypes"),
                    QVariantList { QStringLiteral("com.adobe.ase-file"),
                        QStringLiteral("com.example.declared") } } } });
    EXPECT_EQ(UTType::descriptionForIdentifier(QStringLiteral("com.example.declared"), { app }),
        QStringLiteral("Declared Drawing"));
    EXPECT_EQ(UTType::descriptionForIdentifier(QStringLiteral("com.adobe.ase-file"), { app }),
        QStringLiteral("Swatches"));
    EXPECT_EQ(
        UTType::descriptionForIdentifier(QStringLiteral("com.adobe.illustrator.ai-image"), {}),
        QStringLiteral("Adobe Illustrator document"));
    EXPECT_EQ(UTType::descriptionForIdentifier(QStringLiteral("dyn.ah62d4rv4ge80c65f"), { app }),
        QString());
    EXPECT_EQ(UTType::documentContentTypes(app),
        (QStringList {
            QStringLiteral("com.adobe.ase-file"), QStringLiteral("com.example.declared") }));
}

}
