// SPDX-License-Identifier: GPL-3.0-or-later
// Sample files: tests/data/formats (see tests/data/README.md for their origins).
#include "FileKindSniffer.h"

#include "FormatsTestData.h"

using namespace Formats;

struct SniffSampleCase {
    const char* file;
    const char* nameGiven; // the name the sniffer is told, which may differ from the sample's
    FileKind kind;
};

class SniffSample : public testing::TestWithParam<SniffSampleCase> { };

TEST_P(SniffSample, tellsTheKind)
{
    const QByteArray head
        = formatSample(QString::fromLatin1(GetParam().file)).left(FileKindHeadSize);
    EXPECT_EQ(fileKindName(sniffFileKind(head, QString::fromLatin1(GetParam().nameGiven))),
        fileKindName(GetParam().kind));
}

INSTANTIATE_TEST_SUITE_P(Samples, SniffSample,
    testing::Values(
        SniffSampleCase { "samples/illustrator-normal.head.ai", "a.ai", FileKind::IllustratorPdf },
        SniffSampleCase {
            "samples/illustrator-without-pdf-content.head.ai", "b.ai", FileKind::IllustratorPdf },
        SniffSampleCase {
            "samples/illustrator-saved-as.head.pdf", "c.pdf", FileKind::IllustratorPdf },
        SniffSampleCase { "samples/illustrator24.eps", "d.eps", FileKind::Eps },
        SniffSampleCase { "samples/illustrator88.eps", "e.eps", FileKind::Eps },
        SniffSampleCase { "samples/illustrator88.eps", "e.ai", FileKind::IllustratorPostScript },
        SniffSampleCase { "samples/postscript-exiftool.eps", "f.ai", FileKind::Eps },
        SniffSampleCase { "samples/indesign15.indd", "g.indd", FileKind::InDesign },
        SniffSampleCase { "samples/indesign-exiftool.indd", "renamed.bin", FileKind::InDesign },
        SniffSampleCase {
            "samples/interchange-exiftool.inx", "h.inx", FileKind::InDesignInterchange },
        SniffSampleCase { "samples/idml-4-pages-layers.idml", "i.idml", FileKind::Idml },
        SniffSampleCase { "ase/sampler.ase", "j.ase", FileKind::SwatchExchange }));

struct SniffBytesCase {
    const char* name;
    QByteArray head;
    const char* fileName;
    FileKind kind;
};

class SniffBytes : public testing::TestWithParam<SniffBytesCase> { };

TEST_P(SniffBytes, tellsTheKind)
{
    EXPECT_EQ(
        fileKindName(sniffFileKind(GetParam().head, QString::fromLatin1(GetParam().fileName))),
        fileKindName(GetParam().kind));
}

static QByteArray zipWithFirstEntry(const QByteArray& name, const QByteArray& content)
{
    QByteArray header("PK\x03\x04", 4);
    header += QByteArray(22, '\0');
    header += char(name.size());
    header += '\0';
    header += QByteArray(2, '\0');
    return header + name + content;
}

INSTANTIATE_TEST_SUITE_P(Cases, SniffBytes,
    testing::Values(SniffBytesCase { "plainPdf", "%PDF-1.7\n1 0 obj <</Type/Catalog>>", "x.pdf",
                        FileKind::Unknown },
        SniffBytesCase {
            "pdfNamedAi", "%PDF-1.7\n1 0 obj <</Type/Catalog>>", "x.AI", FileKind::IllustratorPdf },
        SniffBytesCase { "pdfWithPrivateData", "%PDF-1.5\n<</AIPrivateData1 5 0 R>>", "x.pdf",
            FileKind::IllustratorPdf },
        SniffBytesCase { "illustratorPostScript",
            "%!PS-Adobe-3.0\n%%Creator: Adobe Illustrator(R) 8.0\n", "x.ps",
            FileKind::IllustratorPostScript },
        // Print drivers write EPS whose first line names no EPSF version: drawn all the same.
        SniffBytesCase {
            "plainPostScript", "%!PS-Adobe-3.0\n%%Creator: dvips\n", "x.ps", FileKind::Eps },
        SniffBytesCase {
            "epsWithControlD", "\x04%!PS-Adobe-3.0 EPSF-3.0\n", "x.eps", FileKind::Eps },
        SniffBytesCase {
            "binaryEps", QByteArray("\xC5\xD0\xD3\xC6\x1E\0\0\0", 8), "x", FileKind::Eps },
        SniffBytesCase { "interchangeWithBom",
            "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<?aid style=\"33\" type=\"document\"?>", "x.inx",
            FileKind::InDesignInterchange },
        SniffBytesCase {
            "otherXml", "<?xml version=\"1.0\"?>\n<svg/>", "x.inx", FileKind::Unknown },
        SniffBytesCase { "idml",
            zipWithFirstEntry("mimetype", "application/vnd.adobe.indesign-idml-package"), "x.idml",
            FileKind::Idml },
        SniffBytesCase { "otherZip", zipWithFirstEntry("mimetype", "application/epub+zip"),
            "x.idml", FileKind::Unknown },
        SniffBytesCase { "zipCutShort", QByteArray("PK\x03\x04", 4), "x.idml", FileKind::Unknown },
        SniffBytesCase { "freeHand3", "FHD3\0\0\0\0", "x.fh3", FileKind::FreeHand },
        SniffBytesCase { "freeHandChunk", QByteArray(200, '\0') + "AGD2" + QByteArray(20, '\0'),
            "x.fh9", FileKind::FreeHand },
        SniffBytesCase {
            "agdWithoutVersion", QByteArray(200, '\0') + "AGDx", "x", FileKind::Unknown },
        SniffBytesCase { "swatches", "ASEF\0\1\0\0", "x", FileKind::SwatchExchange },
        SniffBytesCase { "empty", "", "x.indd", FileKind::Unknown }),
    [](const testing::TestParamInfo<SniffBytesCase>& info) {
        return std::string(info.param.name);
    });
