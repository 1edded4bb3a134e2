// SPDX-License-Identifier: GPL-3.0-or-later
// Sample files: tests/data/formats (see tests/data/README.md for their origins).
#include "FileKindSniffer.h"

#include "FormatsTestData.h"

using namespace Formats;

namespace {

QByteArray zipWithFirstEntry(const QByteArray& name, const QByteArray& content)
{
    QByteArray header("PK\x03\x04", 4);
    header += QByteArray(22, '\0');
    header += char(name.size());
    header += QByteArray(3, '\0');
    return header + name + content;
}

void expectKind(const QByteArray& head, const char* fileName, FileKind kind)
{
    EXPECT_EQ(fileKindName(sniffFileKind(head, QString::fromLatin1(fileName))), fileKindName(kind))
        << fileName << ": " << head.left(40).toStdString();
}

}

// The name the sniffer is told may differ from the sample's.
TEST(FileKindSniffer, tellsTheKindOfTheSamples)
{
    const struct {
        const char* file;
        const char* nameGiven;
        FileKind kind;
    } cases[] = {
        { "samples/illustrator-saved-as.head.pdf", "c.pdf", FileKind::IllustratorPdf },
        { "samples/illustrator88.eps", "e.eps", FileKind::Eps },
        { "samples/postscript-exiftool.eps", "f.ai", FileKind::Eps },
        { "samples/indesign-exiftool.indd", "renamed.bin", FileKind::InDesign },
        { "samples/interchange-exiftool.inx", "h.inx", FileKind::InDesignInterchange },
    };
    for (const auto& c : cases)
        expectKind(
            formatSample(QString::fromLatin1(c.file)).left(FileKindHeadSize), c.nameGiven, c.kind);
}

TEST(FileKindSniffer, tellsTheKindOfEachSignature)
{
    const struct {
        QByteArray head;
        const char* fileName;
        FileKind kind;
    } cases[] = {
        { "%PDF-1.7\n1 0 obj <</Type/Catalog>>", "x.pdf", FileKind::Unknown },
        { "%PDF-1.7\n1 0 obj <</Type/Catalog>>", "x.AI", FileKind::IllustratorPdf },
        { "%PDF-1.5\n<</AIPrivateData1 5 0 R>>", "x.pdf", FileKind::IllustratorPdf },
        { "%!PS-Adobe-3.0\n%%Creator: Adobe Illustrator(R) 8.0\n", "x.ps",
            FileKind::IllustratorPostScript },
        // Print drivers write EPS whose first line names no EPSF version: drawn all the same.
        { "%!PS-Adobe-3.0\n%%Creator: dvips\n", "x.ps", FileKind::Eps },
        { "\x04%!PS-Adobe-3.0 EPSF-3.0\n", "x.eps", FileKind::Eps },
        { QByteArray("\xC5\xD0\xD3\xC6\x1E\0\0\0", 8), "x", FileKind::Eps },
        { "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<?aid style=\"33\" type=\"document\"?>", "x.inx",
            FileKind::InDesignInterchange },
        { "<?xml version=\"1.0\"?>\n<svg/>", "x.inx", FileKind::Unknown },
        { zipWithFirstEntry("mimetype", "application/vnd.adobe.indesign-idml-package"), "x.idml",
            FileKind::Idml },
        { zipWithFirstEntry("mimetype", "application/epub+zip"), "x.idml", FileKind::Unknown },
        { QByteArray("PK\x03\x04", 4), "x.idml", FileKind::Unknown },
        { QByteArray("FHD3\0\0\0\0", 8), "x.fh3", FileKind::FreeHand },
        { QByteArray(200, '\0') + "AGD2" + QByteArray(20, '\0'), "x.fh9", FileKind::FreeHand },
        { QByteArray(200, '\0') + "AGDx", "x", FileKind::Unknown },
        { QByteArray("ASEF\0\1\0\0", 8), "x", FileKind::SwatchExchange },
        { "", "x.indd", FileKind::Unknown },
    };
    for (const auto& c : cases)
        expectKind(c.head, c.fileName, c.kind);
}
