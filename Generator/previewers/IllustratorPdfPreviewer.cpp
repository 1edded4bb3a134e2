// SPDX-License-Identifier: GPL-3.0-or-later
#include "IllustratorPdfPreviewer.h"

#include "ByteSearch.h"
#include "DocumentFile.h"
#include "PdfPageRenderer.h"
#include "XmpMetadata.h"
#include "XmpPanels.h"

#include <QFileInfo>
#include <cmath>
#include <memory>
#include <poppler-qt6.h>

namespace Preview {

namespace {

    constexpr double PreviewDpi = 144;
    constexpr double MostPixels = 4000;
    // Writers put the end-of-file marker within the last kilobyte; further junk is tolerated.
    constexpr qsizetype EndMarkerWindow = 2048;

    struct OpenDocument {
        std::shared_ptr<DocumentFile> file;
        std::unique_ptr<Poppler::Document> pdf;
        std::optional<Formats::XmpMetadata> xmp;
    };

    // poppler reports every oddity of a file on stderr, where only our one line belongs.
    void silencePoppler()
    {
        static const bool silenced = [] {
            Poppler::setDebugErrorFunction([](const QString&, const QVariant&) {}, QVariant());
            return true;
        }();
        Q_UNUSED(silenced);
    }

    Formats::ParseResult<OpenDocument> openDocument(const QString& path)
    {
        silencePoppler();
        auto mapped = DocumentFile::open(path);
        if (!mapped)
            return mapped.failure();
        const QByteArrayView bytes = (*mapped)->bytes();
        if (!bytes.startsWith("%PDF-"))
            return Formats::fail(Formats::FormatError::NotThisKind,
                QStringLiteral("the file is not a PDF-compatible Illustrator document"));
        if (!bytes.last(std::min(bytes.size(), EndMarkerWindow)).contains("%%EOF"))
            return Formats::fail(Formats::FormatError::DamagedFile,
                QStringLiteral("the document is cut short (no end-of-file marker)"));
        OpenDocument document { *mapped,
            std::unique_ptr<Poppler::Document>(Poppler::Document::load(path)), {} };
        if (!document.pdf || document.pdf->numPages() < 1)
            return Formats::fail(Formats::FormatError::DamagedFile,
                QStringLiteral("the PDF part of the document cannot be read"));
        if (document.pdf->isLocked())
            return Formats::fail(Formats::FormatError::UnsupportedVariant,
                QStringLiteral("the document is protected by a password"));
        // exempi picks the document's own packet, not those of placed images.
        if (auto xmp = Formats::readXmpOfFile(path))
            document.xmp = std::move(xmp).value();
        return document;
    }

    // Illustrator keeps its own document in private data of the page and, saving with PDF
    // content, writes its layers as the PDF's optional content. Saved without PDF content, the
    // PDF is a single page of notice, in the language of the application that wrote it, and the
    // layers live in the private data alone. The picture is then the XMP thumbnail, and the
    // notice's font is none of the document's.
    bool savedWithoutPdfContent(const Poppler::Document& pdf, QByteArrayView bytes)
    {
        return pdf.numPages() == 1 && !pdf.hasOptionalContent()
            && Formats::findBytes(bytes, "/AIPrivateData") >= 0;
    }

    QString number(double value)
    {
        return QString::number(value, 'f', value == std::round(value) ? 0 : 1);
    }

    QString sizeText(const QSizeF& points)
    {
        return QStringLiteral("%1 × %2 pt (%3 × %4 mm)")
            .arg(number(points.width()), number(points.height()),
                number(points.width() / 72 * 25.4), number(points.height() / 72 * 25.4));
    }

    QString baseFontName(const QString& name)
    {
        // Subsets are named "ABCDEF+Name".
        const qsizetype plus = name.indexOf(u'+');
        return plus == 6 ? name.mid(7) : name;
    }

    std::vector<PreviewFont> fontsFromPdf(Poppler::Document& pdf)
    {
        std::vector<PreviewFont> fonts;
        QStringList seen;
        for (const Poppler::FontInfo& info : pdf.fonts()) {
            const QString name = baseFontName(info.name());
            if (name.isEmpty() || seen.contains(name))
                continue;
            seen.append(name);
            PreviewFont font;
            font.name = name;
            font.kind = info.typeName();
            fonts.push_back(font);
        }
        return fonts;
    }

    PreviewContent describe(const QString& path, OpenDocument& document, bool withoutPdf)
    {
        PreviewContent content;
        content.title = QFileInfo(path).fileName();
        const QString suffix = QFileInfo(path).suffix().toLower();
        content.kindName = suffix == u"pdf" ? QStringLiteral("PDF saved by Illustrator")
            : suffix == u"ait"              ? QStringLiteral("Illustrator template")
                                            : QStringLiteral("Illustrator document");
        Poppler::Document& pdf = *document.pdf;
        content.pageCount = pdf.numPages();
        if (const std::unique_ptr<Poppler::Page> first(pdf.page(0)); first)
            content.facts.push_back({ QStringLiteral("Size"), sizeText(first->pageSizeF()) });
        content.facts.push_back(
            { QStringLiteral("Artboards"), QString::number(content.pageCount) });
        if (document.xmp)
            addXmpPanels(content, *document.xmp, path);
        if (!document.xmp || document.xmp->creatorTool.isEmpty()) {
            if (const QString creator = pdf.info(QStringLiteral("Creator")); !creator.isEmpty())
                content.facts.push_back({ QStringLiteral("Creator"), creator });
        }
        const auto version = pdf.getPdfVersion();
        content.facts.push_back({ QStringLiteral("PDF version"),
            QStringLiteral("%1.%2").arg(version.major).arg(version.minor) });
        if (content.fonts.empty() && !withoutPdf)
            content.fonts = fontsFromPdf(pdf);
        return content;
    }

    std::vector<PreviewPage> embeddedPages(const OpenDocument& document)
    {
        return document.xmp ? thumbnailPagesFromXmp(*document.xmp) : std::vector<PreviewPage> {};
    }

}

Formats::ParseResult<PreviewContent> IllustratorPdfPreviewer::preview(
    const QString& file, const VTPreviewSettings& settings)
{
    auto opened = openDocument(file);
    if (!opened)
        return opened.failure();
    OpenDocument document = std::move(opened).value();
    const bool withoutPdf = savedWithoutPdfContent(*document.pdf, document.file->bytes());
    PreviewContent content = describe(file, document, withoutPdf);
    const qint64 size = document.file->bytes().size();

    if (withoutPdf || settings.preferEmbeddedForPreview(size)) {
        std::vector<PreviewPage> embedded = embeddedPages(document);
        if (!embedded.empty()) {
            content.pages = std::move(embedded);
            content.notes.append(withoutPdf
                    ? QStringLiteral("The document was saved without PDF content: shown is the "
                                     "preview picture embedded in it.")
                    : QStringLiteral("Shown: the preview picture embedded in the file, which is "
                                     "at least %1 MB large.")
                          .arg(double(settings.previewEmbeddedThresholdMB)));
            content.pageCount = withoutPdf ? int(content.pages.size()) : content.pageCount;
            return content;
        }
        // Illustrator 9 and 10 wrote no layers into the PDF either, and no preview picture.
        if (withoutPdf)
            content.notes.append(QStringLiteral("The document may have been saved without PDF "
                                                "content; it holds no preview picture, so its PDF "
                                                "page is shown."));
    }

    const int drawn = std::min(content.pageCount, settings.pageLimit());
    content.pages = renderPdfPages(file, drawn, PreviewDpi, MostPixels);
    content.pagesLeftOut = content.pageCount - drawn;
    const bool spreads = settings.illustratorSpreadMode == VTSpreadMode::Spreads;
    content.spreadMode = spreads ? VTSpreadMode::Spreads : VTSpreadMode::SinglePages;
    for (int index = 0; index < drawn; ++index) {
        content.pages[size_t(index)].label = QStringLiteral("Artboard %1").arg(index + 1);
        content.pages[size_t(index)].spread = spreads ? 0 : -1;
    }
    return content;
}

Formats::ParseResult<QImage> IllustratorPdfPreviewer::thumbnail(
    const QString& file, int maxSize, const VTPreviewSettings& settings)
{
    auto document = openDocument(file);
    if (!document)
        return document.failure();
    const bool withoutPdf = savedWithoutPdfContent(*document->pdf, document->file->bytes());
    if (withoutPdf || settings.preferEmbeddedForThumbnail(document->file->bytes().size())) {
        for (const PreviewPage& page : embeddedPages(*document))
            return fitWithin(page.picture(), maxSize);
    }
    const std::unique_ptr<Poppler::Page> page(document->pdf->page(0));
    if (!page)
        return Formats::fail(
            Formats::FormatError::DamagedFile, QStringLiteral("the first page cannot be read"));
    document->pdf->setRenderHint(Poppler::Document::Antialiasing);
    document->pdf->setRenderHint(Poppler::Document::TextAntialiasing);
    const double dpi = pageDpi(page->pageSizeF(), PreviewDpi, maxSize);
    return fitWithin(page->renderToImage(dpi, dpi), maxSize);
}

}
