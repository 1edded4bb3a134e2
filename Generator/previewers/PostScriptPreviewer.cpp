// SPDX-License-Identifier: GPL-3.0-or-later
#include "PostScriptPreviewer.h"

#include "ByteSearch.h"
#include "DocumentFile.h"
#include "EmbeddedPreviews.h"
#include "GhostscriptRenderer.h"
#include "XmpMetadata.h"
#include "XmpPanels.h"

#include <QFileInfo>
#include <algorithm>
#include <cmath>

namespace Preview {

namespace {

    // Pictures larger than this on either side are drawn at a lower resolution.
    constexpr double MostPixels = 4000;
    constexpr double PreviewDpi = 144;

    struct PostScriptDocument {
        // Keeps the bytes mapped for as long as the document is read.
        std::shared_ptr<DocumentFile> file;
        Formats::DscDocument dsc;
        std::optional<Formats::XmpMetadata> xmp;

        QByteArrayView bytes() const { return file->bytes(); }
    };

    Formats::ParseResult<PostScriptDocument> readPostScript(const QString& path)
    {
        auto mapped = DocumentFile::open(path);
        if (!mapped)
            return mapped.failure();
        std::shared_ptr<DocumentFile> file = std::move(mapped).value();
        auto dsc = Formats::parseDscComments(file->bytes());
        if (!dsc)
            return dsc.failure();
        return PostScriptDocument { file, std::move(dsc).value(), std::nullopt };
    }

    void readXmp(PostScriptDocument& document, const QString& path)
    {
        // exempi scans a PostScript file without XMP to its end; print files of hundreds of
        // megabytes are searched faster for the packet's start first.
        if (Formats::findBytes(document.bytes(), "<?xpacket") < 0)
            return;
        if (auto xmp = Formats::readXmpOfFile(path))
            document.xmp = std::move(xmp).value();
    }

    bool isBlank(const QImage& image)
    {
        const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < argb.height(); ++y) {
            const auto* row = reinterpret_cast<const QRgb*>(argb.constScanLine(y));
            for (int x = 0; x < argb.width(); ++x) {
                if (qAlpha(row[x]) != 0)
                    return false;
            }
        }
        return true;
    }

    // The embedded picture, best first: TIFF, EPSI, XMP thumbnail.
    std::optional<PreviewPage> embeddedPicture(
        QByteArrayView bytes, const PostScriptDocument& document)
    {
        PreviewPage page;
        page.label = QStringLiteral("Embedded preview");
        if (document.dsc.binaryHeader)
            page.image = tiffPreviewImage(bytes, *document.dsc.binaryHeader);
        if (page.image.isNull() && document.dsc.preview)
            page.image = epsiPreviewImage(*document.dsc.preview);
        if (!page.image.isNull())
            return page;
        if (document.xmp) {
            std::vector<PreviewPage> thumbnails = thumbnailPagesFromXmp(*document.xmp);
            if (!thumbnails.empty()) {
                thumbnails.front().label = page.label;
                return thumbnails.front();
            }
        }
        return std::nullopt;
    }

    GhostscriptJob jobFor(const PostScriptDocument& document, double dpi)
    {
        const Formats::DscDocument& dsc = document.dsc;
        GhostscriptJob job;
        // Print drivers may leave the showpage out; it stands near the end of every other file.
        const QByteArrayView bytes = document.bytes();
        job.showPageAtEnd
            = Formats::findBytes(bytes.last(std::min<qsizetype>(bytes.size(), 4096)), "showpage")
            < 0;
        const auto box = dsc.usableBoundingBox();
        job.epsCrop = box.has_value();
        const double side = box ? std::max(box->right - box->left, box->top - box->bottom) : 842;
        job.dpi = int(std::clamp(std::min(dpi, MostPixels * 72 / side), 9.0, dpi));
        return job;
    }

    // Ghostscript's picture, or why there is none, said for the document rather than for
    // Ghostscript: a cut file draws nothing, or nothing but what came before the cut, and a file
    // of an Illustrator version whose procedure sets it does not carry stops at their first use.
    Formats::ParseResult<QByteArray> interpret(
        Formats::ParseResult<QByteArray> png, const PostScriptDocument& document)
    {
        const bool complete = document.dsc.reachesEndOfFile;
        if (png && !complete && isBlank(QImage::fromData(*png, "PNG")))
            return Formats::fail(Formats::FormatError::DamagedFile,
                QStringLiteral("the PostScript is cut short: it draws nothing and ends before "
                               "its %%EOF"));
        if (!png && complete && !document.dsc.missingProcSets().isEmpty())
            return Formats::fail(Formats::FormatError::UnsupportedVariant,
                QStringLiteral("the document needs the procedure sets %1 of the application "
                               "that wrote it, which it does not carry")
                    .arg(document.dsc.missingProcSets().join(QStringLiteral(", "))));
        return png;
    }

    QString number(double value)
    {
        return QString::number(value, 'f', value == std::round(value) ? 0 : 1);
    }

    void addFacts(PreviewContent& content, const PostScriptDocument& document)
    {
        const Formats::DscDocument& dsc = document.dsc;
        if (const auto box = dsc.usableBoundingBox()) {
            const double width = box->right - box->left, height = box->top - box->bottom;
            content.facts.push_back({ QStringLiteral("Size"),
                QStringLiteral("%1 × %2 pt (%3 × %4 mm)")
                    .arg(number(width), number(height), number(width / 72 * 25.4),
                        number(height / 72 * 25.4)) });
        }
        if (!dsc.title.isEmpty())
            content.facts.push_back({ QStringLiteral("Title"), dsc.title });
        QString creator = dsc.creator;
        if (creator.isEmpty() && document.xmp)
            creator = document.xmp->creatorTool;
        if (!creator.isEmpty())
            content.facts.push_back({ QStringLiteral("Creator"), creator });
        if (!dsc.versionLine.isEmpty())
            content.facts.push_back({ QStringLiteral("Format"), dsc.versionLine.mid(2) });
    }

    void addPanels(PreviewContent& content, const PostScriptDocument& document, const QString& file)
    {
        for (const QString& name : document.dsc.fonts())
            content.fonts.push_back(PreviewFont { name, {}, {}, {}, {}, {} });
        PreviewSwatchGroup custom { QStringLiteral("Custom colours"), {} };
        for (const Formats::DscCustomColor& color : document.dsc.customColors) {
            PreviewSwatch swatch;
            swatch.name = color.name;
            swatch.model = color.model == Formats::DscCustomColor::Model::Cmyk
                ? QStringLiteral("CMYK")
                : color.model == Formats::DscCustomColor::Model::Rgb ? QStringLiteral("RGB")
                                                                     : QString();
            swatch.values = color.values;
            swatch.spot = true;
            custom.swatches.push_back(swatch);
        }
        if (document.xmp) {
            if (content.fonts.empty())
                content.fonts = fontsFromXmp(*document.xmp);
            content.links = linksFromXmp(*document.xmp, file);
            content.swatchGroups = swatchGroupsFromXmp(*document.xmp);
        }
        if (!custom.swatches.empty() && content.swatchGroups.empty())
            content.swatchGroups.push_back(custom);
    }

}

PostScriptPreviewer::PostScriptPreviewer(Kind kind)
    : m_kind(kind)
{
}

Formats::ParseResult<PreviewContent> PostScriptPreviewer::preview(
    const QString& file, const VTPreviewSettings& settings)
{
    auto read = readPostScript(file);
    if (!read)
        return read.failure();
    auto document = std::make_optional(std::move(read).value());
    const QByteArrayView bytes = document->bytes();
    // Ghostscript draws while the rest of the document is read, unless the embedded picture is
    // to be shown instead.
    const bool preferEmbedded = settings.preferEmbeddedForPreview(bytes.size());
    std::optional<GhostscriptRun> drawing;
    if (!preferEmbedded)
        drawing.emplace(file, jobFor(*document, PreviewDpi));
    readXmp(*document, file);

    PreviewContent content;
    content.title = QFileInfo(file).fileName();
    content.kindName = m_kind == Kind::Eps ? QStringLiteral("Encapsulated PostScript")
                                           : QStringLiteral("Illustrator document (PostScript)");
    addFacts(content, *document);
    addPanels(content, *document, file);

    const std::optional<PreviewPage> embedded = embeddedPicture(bytes, *document);
    if (embedded && preferEmbedded) {
        content.pages.push_back(*embedded);
        content.notes.append(QStringLiteral("Shown: the preview picture embedded in the file, "
                                            "which is at least %1 MB large.")
                                 .arg(double(settings.previewEmbeddedThresholdMB)));
    } else {
        auto png = interpret(
            drawing ? drawing->result() : renderPostScript(file, jobFor(*document, PreviewDpi)),
            *document);
        if (png) {
            PreviewPage page;
            page.encoded = std::move(png).value();
            page.encodedFormat = QStringLiteral("png");
            page.label = m_kind == Kind::Eps ? QStringLiteral("Artwork") : QStringLiteral("Page 1");
            content.pages.push_back(page);
        } else if (embedded) {
            content.pages.push_back(*embedded);
            content.notes.append(QStringLiteral("Shown: the preview picture embedded in the file; "
                                                "its PostScript could not be drawn (%1).")
                                     .arg(png.reason()));
        } else {
            return png.failure();
        }
    }
    const int pages = document->dsc.pages.value_or(1);
    content.pageCount = std::max(pages, 1);
    if (content.pageCount > 1) {
        content.facts.push_back({ QStringLiteral("Pages"), QString::number(content.pageCount) });
        content.pagesLeftOut = content.pageCount - int(content.pages.size());
        content.notes.append(
            QStringLiteral("Only the first page of a PostScript document is drawn."));
    }
    return content;
}

Formats::ParseResult<QImage> PostScriptPreviewer::thumbnail(
    const QString& file, int maxSize, const VTPreviewSettings& settings)
{
    auto read = readPostScript(file);
    if (!read)
        return read.failure();
    auto document = std::make_optional(std::move(read).value());
    readXmp(*document, file);
    const QByteArrayView bytes = document->bytes();
    const std::optional<PreviewPage> embedded = embeddedPicture(bytes, *document);
    if (embedded && settings.preferEmbeddedForThumbnail(bytes.size()))
        return fitWithin(embedded->picture(), maxSize);

    const auto box = document->dsc.usableBoundingBox();
    const double side = box ? std::max(box->right - box->left, box->top - box->bottom) : 842;
    auto png = interpret(renderPostScript(file,
                             jobFor(*document, std::clamp(maxSize * 72.0 / side, 9.0, PreviewDpi))),
        *document);
    if (png)
        return fitWithin(QImage::fromData(*png, "PNG"), maxSize);
    if (embedded)
        return fitWithin(embedded->picture(), maxSize);
    return png.failure();
}

}
