// SPDX-License-Identifier: GPL-3.0-or-later
// The desktop files of packaging/: each parses, they agree with each other, with the generator's
// Info.plist and with the files they describe.
#include "IdmlPackage.h"
#include "InDesignHeader.h"
#include "KindsTestData.h"
#include "PropertyList.h"
#include "UniformTypeIdentifiers.h"
#include "VistrelUtilities.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

using namespace KindsTestData;

namespace {

QString packagingFile(const QString& name)
{
    return QStringLiteral(TOLVANE_PACKAGING_DIR "/") + name;
}

// The files the build writes from the table of kinds (packaging/DocumentTypes.cmake).
QString generatedPackagingFile(const QString& name)
{
    return QStringLiteral(TOLVANE_GENERATED_PACKAGING_DIR "/") + name;
}

using KeyFile = QMap<QString, QMap<QString, QString>>;

// A desktop-entry style key file; a line that is neither a group, a key nor a comment fails.
KeyFile readKeyFile(const QString& path)
{
    KeyFile groups;
    QString group;
    const QList<QByteArray> lines = TestEnvironment::readFile(path).split('\n');
    for (const QByteArray& raw : lines) {
        const QString line = QString::fromUtf8(raw).trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[') && line.endsWith(u']')) {
            group = line.mid(1, line.size() - 2);
            EXPECT_FALSE(groups.contains(group)) << "group twice: " << group.toStdString();
            groups[group];
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        EXPECT_GT(equals, 0) << "not a key: " << line.toStdString();
        EXPECT_FALSE(group.isEmpty()) << "key before any group: " << line.toStdString();
        if (equals > 0)
            groups[group][line.left(equals).trimmed()] = line.mid(equals + 1).trimmed();
    }
    return groups;
}

QSet<QString> listOf(const QString& value)
{
    EXPECT_TRUE(value.endsWith(u';')) << "a list ends with ';': " << value.toStdString();
    const QStringList items = value.split(u';', Qt::SkipEmptyParts);
    return QSet<QString>(items.begin(), items.end());
}

struct MagicMatch {
    QString type;
    QByteArray value;
    qsizetype from = 0;
    qsizetype to = 0;
    std::vector<MagicMatch> inner; // all of them must match too
};

struct MimeType {
    QStringList globs;
    QStringList parents;
    std::vector<MagicMatch> magic; // any of them
};

// "PK\003\004": the escapes shared-mime-info reads in string values.
QByteArray unescaped(const QString& value)
{
    const QByteArray bytes = value.toUtf8();
    QByteArray out;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\\' && i + 3 < bytes.size() && bytes[i + 1] >= '0'
            && bytes[i + 1] <= '7') {
            out.append(char(bytes.mid(i + 1, 3).toInt(nullptr, 8)));
            i += 3;
        } else {
            out.append(bytes[i]);
        }
    }
    return out;
}

MagicMatch readMatch(QXmlStreamReader& reader)
{
    MagicMatch match;
    const QXmlStreamAttributes attributes = reader.attributes();
    match.type = attributes.value(QLatin1String("type")).toString();
    const QString value = attributes.value(QLatin1String("value")).toString();
    if (match.type == u"big32") {
        const quint32 number = value.toUInt(nullptr, 16);
        for (int shift = 24; shift >= 0; shift -= 8)
            match.value.append(char((number >> shift) & 0xFF));
    } else {
        EXPECT_EQ(match.type, QStringLiteral("string"));
        match.value = unescaped(value);
    }
    const QStringList offsets = attributes.value(QLatin1String("offset")).toString().split(u':');
    match.from = offsets.first().toLongLong();
    match.to = offsets.last().toLongLong();
    while (reader.readNextStartElement())
        match.inner.push_back(readMatch(reader));
    return match;
}

QMap<QString, MimeType> readMimeTypes(const QString& path)
{
    QMap<QString, MimeType> types;
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&file);
    EXPECT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(reader.name(), QStringLiteral("mime-info"));
    while (reader.readNextStartElement()) {
        const QString name = reader.attributes().value(QLatin1String("type")).toString();
        MimeType& type = types[name];
        while (reader.readNextStartElement()) {
            if (reader.name() == u"glob") {
                type.globs.append(reader.attributes().value(QLatin1String("pattern")).toString());
                reader.skipCurrentElement();
            } else if (reader.name() == u"sub-class-of") {
                type.parents.append(reader.attributes().value(QLatin1String("type")).toString());
                reader.skipCurrentElement();
            } else if (reader.name() == u"magic") {
                while (reader.readNextStartElement())
                    type.magic.push_back(readMatch(reader));
            } else {
                reader.skipCurrentElement();
            }
        }
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return types;
}

bool matches(const MagicMatch& match, const QByteArray& bytes)
{
    for (qsizetype at = match.from; at <= match.to; ++at) {
        if (bytes.mid(at, match.value.size()) == match.value) {
            return std::all_of(match.inner.begin(), match.inner.end(),
                [&](const MagicMatch& inner) { return matches(inner, bytes); });
        }
    }
    return false;
}

QStringList typesByContent(const QMap<QString, MimeType>& types, const QByteArray& bytes)
{
    QStringList found;
    for (auto it = types.begin(); it != types.end(); ++it) {
        for (const MagicMatch& match : it->magic) {
            if (matches(match, bytes)) {
                found.append(it.key());
                break;
            }
        }
    }
    return found;
}

// The extensions that the generator's Info.plist declares, from its imported type declarations.
QSet<QString> generatorExtensions()
{
    QSet<QString> extensions;
    QFile file(QStringLiteral(VISTREL_INFO_PLIST));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << VISTREL_INFO_PLIST;
    QXmlStreamReader reader(&file);
    bool inExtensions = false;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == u"key")
            inExtensions = reader.readElementText() == u"public.filename-extension";
        else if (reader.isStartElement() && reader.name() == u"string" && inExtensions)
            extensions.insert(reader.readElementText());
        else if (reader.isEndElement() && reader.name() == u"array")
            inExtensions = false;
    }
    return extensions;
}

// Types that shared-mime-info itself defines, with their globs.
const QMap<QString, QStringList> SystemTypes = {
    { QStringLiteral("application/illustrator"), { QStringLiteral("*.ai") } },
    { QStringLiteral("image/x-eps"),
        { QStringLiteral("*.eps"), QStringLiteral("*.epsf"), QStringLiteral("*.epsi") } },
};

class Packaging : public testing::Test {
protected:
    const KeyFile thumbnailer
        = readKeyFile(generatedPackagingFile(QStringLiteral("tolvane-thumbnailer.thumbnailer")));
    const KeyFile desktop
        = readKeyFile(packagingFile(QStringLiteral("app.tolvane.Tolvane.desktop")));
    const QMap<QString, MimeType> mimeTypes
        = readMimeTypes(generatedPackagingFile(QStringLiteral("tolvane-mime.xml")));

    QSet<QString> thumbnailerTypes() const
    {
        return listOf(thumbnailer.value(QStringLiteral("Thumbnailer Entry"))
                          .value(QStringLiteral("MimeType")));
    }
};

}

TEST_F(Packaging, thumbnailerCallsTheGeneratorsThumbnailCommand)
{
    ASSERT_TRUE(thumbnailer.contains(QStringLiteral("Thumbnailer Entry")));
    const auto entry = thumbnailer.value(QStringLiteral("Thumbnailer Entry"));
    EXPECT_EQ(entry.value(QStringLiteral("TryExec")), QStringLiteral("vistrel-pro-thumbnailer"));
    EXPECT_EQ(entry.value(QStringLiteral("Exec")).split(u' '),
        (QStringList { QStringLiteral("vistrel-pro-thumbnailer"), QStringLiteral("thumbnail"),
            QStringLiteral("%i"), QStringLiteral("--size"), QStringLiteral("%s"),
            QStringLiteral("--out"), QStringLiteral("%o") }));
}

TEST_F(Packaging, everyExtensionOfTheGeneratorHasATypeThatIsThumbnailedAndOpened)
{
    const QSet<QString> extensions = generatorExtensions();
    ASSERT_GE(extensions.size(), 10);
    QMap<QString, MimeType> known = mimeTypes;
    for (auto it = SystemTypes.begin(); it != SystemTypes.end(); ++it)
        known[it.key()].globs = it.value();
    const QSet<QString> opened
        = listOf(desktop.value(QStringLiteral("Desktop Entry")).value(QStringLiteral("MimeType")));
    for (const QString& extension : extensions) {
        QString owner;
        for (auto it = known.begin(); it != known.end(); ++it) {
            if (it->globs.contains(QStringLiteral("*.") + extension)) {
                EXPECT_TRUE(owner.isEmpty()) << extension.toStdString() << " has two types";
                owner = it.key();
            }
        }
        ASSERT_FALSE(owner.isEmpty()) << "no MIME type for ." << extension.toStdString();
        EXPECT_TRUE(thumbnailerTypes().contains(owner)) << owner.toStdString();
        EXPECT_TRUE(opened.contains(owner)) << owner.toStdString();
    }
    // No type of ours that the generator does not read.
    for (auto it = mimeTypes.begin(); it != mimeTypes.end(); ++it) {
        for (const QString& glob : it->globs)
            EXPECT_TRUE(extensions.contains(glob.mid(2))) << glob.toStdString();
        EXPECT_TRUE(thumbnailerTypes().contains(it.key())) << it.key().toStdString();
    }
}

// Both Info.plists come from one table, which names every identifier of the type tests.
TEST_F(Packaging, bothBundlesDeclareTheTypesOfTheTable)
{
    const auto generator = PropertyList::readDictionary(QStringLiteral(VISTREL_INFO_PLIST));
    const auto application = PropertyList::readDictionary(QStringLiteral(TOLVANE_INFO_PLIST));
    ASSERT_TRUE(generator && application);
    const QStringList drawn = UTType::documentContentTypes(*generator);
    EXPECT_EQ(drawn.size(), 17);
    for (const QString& identifier : drawn)
        EXPECT_TRUE(VTutiIsIllustrator(identifier) || VTutiIsInDesign(identifier)
            || VTutiIsInDesignINX(identifier) || VTutiIsEPS(identifier)
            || VTutiIsFreehand(identifier) || VTutiIsASE(identifier))
            << identifier.toStdString();
    const auto declared = [](const QVariantMap& info) {
        QStringList identifiers;
        for (const UTType::Declaration& declaration : UTType::declarations(info))
            identifiers << declaration.identifier + u' ' + declaration.extensions.join(u',');
        return identifiers;
    };
    EXPECT_EQ(declared(*application), declared(*generator));
    for (const QString& identifier : UTType::documentContentTypes(*application))
        EXPECT_TRUE(drawn.contains(identifier)) << identifier.toStdString();
}

TEST_F(Packaging, desktopEntryOpensDesignFilesAndTheUrlScheme)
{
    ASSERT_TRUE(desktop.contains(QStringLiteral("Desktop Entry")));
    const auto entry = desktop.value(QStringLiteral("Desktop Entry"));
    EXPECT_EQ(entry.value(QStringLiteral("Type")), QStringLiteral("Application"));
    EXPECT_EQ(entry.value(QStringLiteral("GenericName")), QStringLiteral("Design File Viewer"));
    EXPECT_TRUE(entry.value(QStringLiteral("Exec")).endsWith(QStringLiteral(" %U")));
    EXPECT_EQ(entry.value(QStringLiteral("DBusActivatable")), QStringLiteral("true"));
    EXPECT_TRUE(listOf(entry.value(QStringLiteral("Categories")))
                    .contains({ QStringLiteral("Graphics"), QStringLiteral("Viewer") }));
    QSet<QString> expected = thumbnailerTypes();
    expected.insert(QStringLiteral("x-scheme-handler/tolvane"));
    EXPECT_EQ(listOf(entry.value(QStringLiteral("MimeType"))), expected);
}

TEST_F(Packaging, magicTellsTheSamplesApart)
{
    struct Case {
        const char* file; // under tests/data, or a literal file when it has no slash
        QStringList types;
    };
    const Case cases[] = {
        { "formats/samples/indesign15.indd", { QStringLiteral("application/x-indesign") } },
        { "formats/samples/indesign-exiftool.indd", { QStringLiteral("application/x-indesign") } },
        { "formats/samples/interchange-exiftool.inx",
            { QStringLiteral("application/x-indesign-interchange") } },
        { "kinds/idml-article-1photo.idml",
            { QStringLiteral("application/vnd.adobe.indesign-idml-package") } },
        { "formats/ase/sampler.ase", { QStringLiteral("application/x-adobe-ase") } },
        { "formats/samples/illustrator24.eps", {} },
        { "formats/samples/illustrator-saved-as.head.pdf", {} },
    };
    for (const Case& c : cases)
        EXPECT_EQ(typesByContent(mimeTypes, sample(QString::fromLatin1(c.file))), c.types)
            << c.file;
    EXPECT_EQ(typesByContent(mimeTypes, QByteArray("AGD3") + QByteArray(100, '\0')),
        QStringList { QStringLiteral("application/x-freehand") });

    // The signatures are the ones the readers use.
    const MagicMatch& guid = mimeTypes.value(QStringLiteral("application/x-indesign")).magic.at(0);
    EXPECT_TRUE(matches(guid, Formats::inDesignHeaderGuid().toByteArray()));
    EXPECT_TRUE(typesByContent(mimeTypes,
        "PK\3\4" + QByteArray(26, '\0') + "mimetype"
            + QByteArray(Formats::IdmlMimeType.data(), Formats::IdmlMimeType.size()))
                    .contains(QStringLiteral("application/vnd.adobe.indesign-idml-package")));
    EXPECT_TRUE(
        typesByContent(mimeTypes, "PK\3\4" + QByteArray(26, '\0') + "mimetypeapplication/epub+zip")
            .isEmpty());
}

TEST_F(Packaging, systemToolsAcceptTheFiles)
{
    struct Tool {
        const char* program;
        QStringList arguments;
    };
    const QString mimeFolder = TestEnvironment::home() + QStringLiteral("/mime");
    QDir().mkpath(mimeFolder + QStringLiteral("/packages"));
    QFile::copy(generatedPackagingFile(QStringLiteral("tolvane-mime.xml")),
        mimeFolder + QStringLiteral("/packages/tolvane-mime.xml"));
    const Tool tools[] = {
        { "xmllint",
            { QStringLiteral("--noout"),
                generatedPackagingFile(QStringLiteral("tolvane-mime.xml")) } },
        { "desktop-file-validate",
            { packagingFile(QStringLiteral("app.tolvane.Tolvane.desktop")) } },
        { "update-mime-database", { mimeFolder } },
    };
    int ran = 0;
    for (const Tool& tool : tools) {
        const QString program = QStandardPaths::findExecutable(QString::fromLatin1(tool.program));
        if (program.isEmpty())
            continue;
        QProcess process;
        process.start(program, tool.arguments);
        ASSERT_TRUE(process.waitForFinished(60000)) << tool.program;
        EXPECT_EQ(process.exitCode(), 0)
            << tool.program << ": " << process.readAllStandardError().toStdString();
        // desktop-file-validate reports problems on stdout and still exits 0 for hints.
        if (QByteArrayView(tool.program) == "desktop-file-validate") {
            EXPECT_TRUE(process.readAllStandardOutput().trimmed().isEmpty());
        }
        ++ran;
    }
    if (ran < 3)
        GTEST_SKIP() << "xmllint, desktop-file-validate or update-mime-database is not installed";
}
