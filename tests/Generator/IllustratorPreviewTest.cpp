// SPDX-License-Identifier: GPL-3.0-or-later
// Illustrator documents as designers save them in any language: names in their own script, and
// documents saved without PDF content recognised by their structure, not by the notice's words.
#include "GeneratorProcess.h"
#include "TestEnvironment.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace GeneratorProcess;

namespace {

// The metadata is UTF-8; the catalog's packet read as PDF text would turn "ß" into "ÃŸ".
TEST(IllustratorPreview, NamesShowInTheirOwnScript)
{
    const QString html = previewPage(generatorData("illustrator-like-names.ai"));
    for (const QString& name : { QStringLiteral("Standard-Farbfeldgruppe 見本"),
             QStringLiteral("Weiß"), QStringLiteral("défaut"), QStringLiteral("赤"),
             QStringLiteral("小塚明朝 Pr6N"), QStringLiteral("Bild ä.tif") })
        EXPECT_TRUE(html.contains(name)) << "missing: " << name.toStdString();
    EXPECT_FALSE(html.contains(QStringLiteral("Ã"))) << html.toStdString();
}

// The real document saved without PDF content, its notice put into German (the words only; the
// structure is Illustrator's).
QByteArray withGermanNotice(QByteArray document)
{
    const qsizetype form = document.indexOf("/Subtype/Form");
    const qsizetype begin = document.indexOf("BT", form);
    const qsizetype end = document.lastIndexOf("ET", document.indexOf("endstream", begin)) + 2;
    const QByteArray notice = "BT\n/T1_0 1 Tf\n12 0 0 -12 -103 -61 Tm\n(Dies ist eine Adobe "
                              "Illustrator-Datei, die ohne PDF-Inhalt gespeichert wurde.) Tj\nET";
    EXPECT_LE(notice.size(), end - begin);
    return document.replace(begin, end - begin, notice.leftJustified(end - begin, ' '));
}

// Without a preview picture (as Illustrator 9 and 10 wrote their PDF-based documents, without
// layers in the PDF too) the PDF page is drawn, and the page says why.
TEST(IllustratorPreview, SavedWithoutPdfContentShowsItsThumbnailOrElseThePdfPage)
{
    const QByteArray document
        = TestEnvironment::readFile(generatorData("illustrator-without-pdf-content.ai"));
    const QString german = TestEnvironment::home() + QStringLiteral("/ohne-pdf.ai");
    TestEnvironment::writeFile(german, withGermanNotice(document));
    QString html = previewPage(german);
    // The picture is the XMP thumbnail (a JPEG), not the drawn notice page.
    EXPECT_TRUE(QFile::exists(out() + QStringLiteral("/page-1.jpg")));
    EXPECT_FALSE(QFile::exists(out() + QStringLiteral("/page-1.png")));
    EXPECT_TRUE(html.contains(QStringLiteral("saved without PDF content")));
    EXPECT_FALSE(html.contains(QStringLiteral("T1_0")));

    const QString bare = TestEnvironment::home() + QStringLiteral("/bare.ai");
    TestEnvironment::writeFile(
        bare, QByteArray(document).replace("xmpGImg:image>", "xmpGImg:imagX>"));
    html = previewPage(bare, out() + QStringLiteral("2"));
    EXPECT_TRUE(QFile::exists(out() + QStringLiteral("2/page-1.png")));
    EXPECT_TRUE(html.contains(QStringLiteral("it holds no preview picture")));
}

}
