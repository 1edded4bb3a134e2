// SPDX-License-Identifier: GPL-3.0-or-later
// The desktop files of packaging/: each parses, they agree with each other, with the generator's
// Info.plist and with the files they describe, as the desktop's own MIME database reads them.
#include "IdmlPackage.h"
#include "InDesignHeader.h"
#include "KindsTestData.h"
#include "PropertyList.h"
#include "UniformTypeIdentifiers.h"
#include "VistrelUtilities.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QMimeDatabase>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>
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
    for (const QByteArray& raw : TestEnvironment::readFile(path).split('\n')) {
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

// The extensions that the generator's Info.plist declares.
QSet<QString> generatorExtensions()
{
    QSet<QString> extensions;
    const auto info = PropertyList::readDictionary(QStringLiteral(VISTREL_INFO_PLIST));
    EXPECT_TRUE(info.has_value());
    for (const UTType::Declaration& declaration :
        UTType::declarations(info.value_or(QVariantMap())))
        extensions.unite(
            QSet<QString>(declaration.extensions.begin(), declaration.extensions.end()));
    return extensions;
}

QString runTool(const char* name, const QStringList& arguments)
{
    const QString program = QStandardPaths::findExecutable(QString::fromLatin1(name));
    if (program.isEmpty())
        return QStringLiteral("%1 is not installed").arg(QLatin1String(name));
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
        return QStringLiteral("%1 failed: ").arg(QLatin1String(name)) + process.readAll();
    return QString::fromUtf8(process.readAll()).trimmed();
}

class Packaging : public testing::Test {
protected:
    // Our types go into the test home's MIME database, beside those of the system.
    void SetUp() override
    {
        const QString mime = TestEnvironment::userLibrary() + QStringLiteral("/mime");
        QDir().mkpath(mime + QStringLiteral("/packages"));
        ASSERT_TRUE(QFile::copy(generatedPackagingFile(QStringLiteral("tolvane-mime.xml")),
            mime + QStringLiteral("/packages/tolvane-mime.xml")));
        EXPECT_EQ(runTool("update-mime-database", { mime }), QString());
        static const QRegularExpression type(QStringLiteral("<mime-type type=\"([^\"]+)\""));
        const QString xml = QString::fromUtf8(
            TestEnvironment::readFile(generatedPackagingFile(QStringLiteral("tolvane-mime.xml"))));
        for (auto it = type.globalMatch(xml); it.hasNext();)
            ourTypes.append(it.next().captured(1));
        ASSERT_FALSE(ourTypes.isEmpty());
    }

    QSet<QString> thumbnailerTypes() const
    {
        return listOf(thumbnailer.value(QStringLiteral("Thumbnailer Entry"))
                          .value(QStringLiteral("MimeType")));
    }

    // As the file manager sees a file by its content: through GIO, which reads the same database.
    QString typeOfContent(const QByteArray& bytes) const
    {
        const QString file = TestEnvironment::home() + QStringLiteral("/content");
        TestEnvironment::writeFile(file, bytes);
        return runTool("gio", { "info", "-a", "standard::content-type", file })
            .section(QStringLiteral("standard::content-type: "), 1)
            .trimmed();
    }

    const KeyFile thumbnailer
        = readKeyFile(generatedPackagingFile(QStringLiteral("tolvane-thumbnailer.thumbnailer")));
    const KeyFile desktop
        = readKeyFile(packagingFile(QStringLiteral("app.tolvane.Tolvane.desktop")));
    QStringList ourTypes;
    QMimeDatabase mimeDatabase;
};

}

TEST_F(Packaging, everyExtensionOfTheGeneratorHasATypeThatIsThumbnailedAndOpened)
{
    const QSet<QString> extensions = generatorExtensions();
    ASSERT_GE(extensions.size(), 10);
    const QSet<QString> opened
        = listOf(desktop.value(QStringLiteral("Desktop Entry")).value(QStringLiteral("MimeType")));
    for (const QString& extension : extensions) {
        const QMimeType type = mimeDatabase.mimeTypeForFile(
            QStringLiteral("x.") + extension, QMimeDatabase::MatchExtension);
        ASSERT_FALSE(type.isDefault()) << "no MIME type for ." << extension.toStdString();
        EXPECT_TRUE(thumbnailerTypes().contains(type.name())) << type.name().toStdString();
        EXPECT_TRUE(opened.contains(type.name())) << type.name().toStdString();
    }
    // No type of ours that the generator does not read.
    for (const QString& name : ourTypes) {
        for (const QString& glob : mimeDatabase.mimeTypeForName(name).globPatterns())
            EXPECT_TRUE(extensions.contains(glob.mid(2))) << glob.toStdString();
        EXPECT_TRUE(thumbnailerTypes().contains(name)) << name.toStdString();
    }
}

// Both Info.plists come from one table, which names every identifier of the type tests.
TEST_F(Packaging, bothBundlesDeclareTheTypesOfTheTable)
{
    const auto generator = PropertyList::readDictionary(QStringLiteral(VISTREL_INFO_PLIST));
    const auto application = PropertyList::readDictionary(QStringLiteral(TOLVANE_INFO_PLIST));
    ASSERT_TRUE(generator && application);
    EXPECT_EQ(generator->value("CFBundleIdentifier").toString(),
        QStringLiteral("app.tolvane.VistrelPro"));
    EXPECT_EQ(generator->value("CFBundleExecutable").toString(),
        QFileInfo(QStringLiteral(VISTREL_EXECUTABLE)).fileName());
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

// The thumbnailer calls the generator's thumbnail command; the application opens what is
// thumbnailed, and its URLs.
TEST_F(Packaging, entriesCallTheGeneratorAndOpenTheTypesAndTheUrlScheme)
{
    const auto command = thumbnailer.value(QStringLiteral("Thumbnailer Entry"));
    EXPECT_EQ(command.value(QStringLiteral("TryExec")), QStringLiteral("vistrel-pro-thumbnailer"));
    EXPECT_EQ(command.value(QStringLiteral("Exec")),
        QStringLiteral("vistrel-pro-thumbnailer thumbnail %i --size %s --out %o"));
    const auto entry = desktop.value(QStringLiteral("Desktop Entry"));
    EXPECT_TRUE(entry.value(QStringLiteral("Exec")).endsWith(QStringLiteral(" %U")));
    EXPECT_EQ(entry.value(QStringLiteral("DBusActivatable")), QStringLiteral("true"));
    QSet<QString> expected = thumbnailerTypes();
    expected.insert(QStringLiteral("x-scheme-handler/tolvane"));
    EXPECT_EQ(listOf(entry.value(QStringLiteral("MimeType"))), expected);
    EXPECT_EQ(runTool("desktop-file-validate",
                  { packagingFile(QStringLiteral("app.tolvane.Tolvane.desktop")) }),
        QString());
}

// By content alone, with the signatures the readers use; files of other kinds are not ours.
TEST_F(Packaging, magicTellsTheSamplesApart)
{
    const std::pair<const char*, QString> samples[] = {
        { "formats/samples/indesign15.indd", QStringLiteral("application/x-indesign") },
        { "formats/samples/indesign-exiftool.indd", QStringLiteral("application/x-indesign") },
        { "formats/samples/interchange-exiftool.inx",
            QStringLiteral("application/x-indesign-interchange") },
        { "kinds/idml-article-1photo.idml",
            QStringLiteral("application/vnd.adobe.indesign-idml-package") },
        { "formats/ase/sampler.ase", QStringLiteral("application/x-adobe-ase") },
    };
    for (const auto& [file, type] : samples)
        EXPECT_EQ(typeOfContent(sample(QString::fromLatin1(file))), type) << file;
    EXPECT_EQ(typeOfContent(QByteArray("AGD3") + QByteArray(100, '\0')),
        QStringLiteral("application/x-freehand"));
    EXPECT_EQ(typeOfContent(Formats::inDesignHeaderGuid().toByteArray() + QByteArray(100, '\0')),
        QStringLiteral("application/x-indesign"));
    EXPECT_EQ(typeOfContent("PK\3\4" + QByteArray(26, '\0') + "mimetype"
                  + QByteArray(Formats::IdmlMimeType.data(), Formats::IdmlMimeType.size())),
        QStringLiteral("application/vnd.adobe.indesign-idml-package"));
    for (const QByteArray& other : { sample(QStringLiteral("formats/samples/illustrator24.eps")),
             sample(QStringLiteral("formats/samples/illustrator-saved-as.head.pdf")),
             "PK\3\4" + QByteArray(26, '\0') + "mimetypeapplication/epub+zip" })
        EXPECT_FALSE(ourTypes.contains(typeOfContent(other))) << typeOfContent(other).toStdString();
}
