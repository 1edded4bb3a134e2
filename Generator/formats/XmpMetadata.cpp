// SPDX-License-Identifier: GPL-3.0-or-later
#include "XmpMetadata.h"

#include <QFile>
#include <cmath>
#include <exempi/xmp.h>
#include <memory>

namespace Formats {

namespace {

    namespace Ns {
        constexpr const char* Xmp = "http://ns.adobe.com/xap/1.0/";
        constexpr const char* XmpGImg = "http://ns.adobe.com/xap/1.0/g/img/";
        constexpr const char* XmpMM = "http://ns.adobe.com/xap/1.0/mm/";
        constexpr const char* XmpTPg = "http://ns.adobe.com/xap/1.0/t/pg/";
        constexpr const char* XmpG = "http://ns.adobe.com/xap/1.0/g/";
        constexpr const char* StFnt = "http://ns.adobe.com/xap/1.0/sType/Font#";
        constexpr const char* StRef = "http://ns.adobe.com/xap/1.0/sType/ResourceRef#";
        constexpr const char* StMfs = "http://ns.adobe.com/xap/1.0/sType/ManifestItem#";
    }

    constexpr const char* ComponentNames[] = { "cyan", "magenta", "yellow", "black", "red", "green",
        "blue", "L", "A", "B", "tint", "gray" };

    // No writer puts more items in an array; a hostile packet may declare millions.
    constexpr int MostItems = 100000;

    using XmpString = std::unique_ptr<_XmpString, decltype(&xmp_string_free)>;
    using XmpPacket = std::unique_ptr<_Xmp, decltype(&xmp_free)>;
    using XmpFile = std::unique_ptr<_XmpFile, decltype(&xmp_files_free)>;

    XmpString newString() { return XmpString(xmp_string_new(), &xmp_string_free); }

    // The toolkit is set up once per process; paths name fields by the prefixes it registered.
    struct Toolkit {
        bool ready = false;
        QByteArray xmpG, xmpGImg, xmpTPg, stFnt, stRef, stMfs;

        static const Toolkit& get()
        {
            static const Toolkit toolkit = [] {
                Toolkit t;
                t.ready = xmp_init();
                if (t.ready) {
                    t.xmpG = prefix(Ns::XmpG, "xmpG");
                    t.xmpGImg = prefix(Ns::XmpGImg, "xmpGImg");
                    t.xmpTPg = prefix(Ns::XmpTPg, "xmpTPg");
                    t.stFnt = prefix(Ns::StFnt, "stFnt");
                    t.stRef = prefix(Ns::StRef, "stRef");
                    t.stMfs = prefix(Ns::StMfs, "stMfs");
                }
                return t;
            }();
            return toolkit;
        }

    private:
        // The prefix ends in a colon.
        static QByteArray prefix(const char* uri, const char* suggested)
        {
            XmpString registered = newString();
            xmp_register_namespace(uri, suggested, registered.get());
            QByteArray result(xmp_string_cstr(registered.get()));
            return result.endsWith(':') ? result : result + ':';
        }
    };

    // Reads the properties of one packet by schema and path.
    class Reader {
    public:
        explicit Reader(XmpPtr xmp)
            : m_xmp(xmp)
            , m_t(Toolkit::get())
        {
        }

        std::optional<QString> value(const char* schema, const QByteArray& path) const
        {
            XmpString value = newString();
            uint32_t bits = 0;
            if (!xmp_get_property(m_xmp, schema, path.constData(), value.get(), &bits)
                || !XMP_IS_PROP_SIMPLE(bits))
                return std::nullopt;
            return QString::fromUtf8(xmp_string_cstr(value.get())).trimmed();
        }

        QString text(const char* schema, const QByteArray& path) const
        {
            return value(schema, path).value_or(QString());
        }

        std::optional<double> number(const char* schema, const QByteArray& path) const
        {
            bool ok = false;
            const double result = text(schema, path).toDouble(&ok);
            return ok && std::isfinite(result) ? std::optional<double>(result) : std::nullopt;
        }

        int integer(const char* schema, const QByteArray& path) const
        {
            return int(std::clamp(number(schema, path).value_or(0.0), -1e9, 1e9));
        }

        // The number of items of an array, counted up to the first missing one.
        int count(const char* schema, const QByteArray& arrayPath) const
        {
            int items = 0;
            while (items < MostItems
                && xmp_has_property(m_xmp, schema, item(arrayPath, items + 1).constData()))
                ++items;
            return items;
        }

        static QByteArray item(const QByteArray& arrayPath, int index)
        {
            return arrayPath + '[' + QByteArray::number(index) + ']';
        }

        XmpSwatch swatch(const char* schema, const QByteArray& path) const
        {
            XmpSwatch swatch;
            swatch.name = text(schema, path + '/' + m_t.xmpG + "swatchName");
            swatch.mode = text(schema, path + '/' + m_t.xmpG + "mode");
            swatch.type = text(schema, path + '/' + m_t.xmpG + "type");
            for (const char* component : ComponentNames) {
                if (const auto value = number(schema, path + '/' + m_t.xmpG + component))
                    swatch.components.push_back({ QString::fromLatin1(component), *value });
            }
            return swatch;
        }

        std::vector<XmpSwatch> swatches(const char* schema, const QByteArray& arrayPath) const
        {
            std::vector<XmpSwatch> result;
            const int items = count(schema, arrayPath);
            for (int index = 1; index <= items; ++index)
                result.push_back(swatch(schema, item(arrayPath, index)));
            return result;
        }

        XmpFont font(const QByteArray& path) const
        {
            const auto field
                = [&](const char* name) { return text(Ns::XmpTPg, path + '/' + m_t.stFnt + name); };
            XmpFont font;
            font.fontName = field("fontName");
            font.fontFamily = field("fontFamily");
            font.fontFace = field("fontFace");
            font.fontType = field("fontType");
            font.fontFileName = field("fontFileName");
            font.versionString = field("versionString");
            font.composite = field("composite").compare(u"true", Qt::CaseInsensitive) == 0;
            return font;
        }

        XmpLink link(const QByteArray& path) const
        {
            const QByteArray reference = path + '/' + m_t.stMfs + "reference/" + m_t.stRef;
            XmpLink link;
            link.linkForm = text(Ns::XmpMM, path + '/' + m_t.stMfs + "linkForm");
            link.filePath = text(Ns::XmpMM, reference + "filePath");
            link.documentId = text(Ns::XmpMM, reference + "documentID");
            link.instanceId = text(Ns::XmpMM, reference + "instanceID");
            return link;
        }

        XmpThumbnail thumbnail(const char* schema, const QByteArray& path, int pageNumber) const
        {
            const auto field = [&](const char* name) { return path + '/' + m_t.xmpGImg + name; };
            XmpThumbnail thumbnail;
            thumbnail.pageNumber = pageNumber;
            thumbnail.width = integer(schema, field("width"));
            thumbnail.height = integer(schema, field("height"));
            thumbnail.format = text(schema, field("format"));
            thumbnail.image = QByteArray::fromBase64(text(schema, field("image")).toLatin1());
            return thumbnail;
        }

        XmpMetadata metadata() const
        {
            XmpMetadata metadata;
            metadata.creatorTool = text(Ns::Xmp, "CreatorTool");
            if (const auto pages = number(Ns::XmpTPg, "NPages");
                pages && *pages >= 0 && *pages < 1e9)
                metadata.pageCount = int(*pages);
            for (int index = 1, n = count(Ns::XmpTPg, "Fonts"); index <= n; ++index)
                metadata.fonts.push_back(font(item("Fonts", index)));
            for (int index = 1, n = count(Ns::XmpTPg, "SwatchGroups"); index <= n; ++index) {
                const QByteArray group = item("SwatchGroups", index) + '/' + m_t.xmpG;
                metadata.swatchGroups.push_back({ text(Ns::XmpTPg, group + "groupName"),
                    integer(Ns::XmpTPg, group + "groupType"),
                    swatches(Ns::XmpTPg, group + "Colorants") });
            }
            metadata.colorants = swatches(Ns::XmpTPg, "Colorants");
            for (int index = 1, n = count(Ns::XmpMM, "Manifest"); index <= n; ++index)
                metadata.links.push_back(link(item("Manifest", index)));
            for (int index = 1, n = count(Ns::Xmp, "Thumbnails"); index <= n; ++index)
                metadata.thumbnails.push_back(thumbnail(Ns::Xmp, item("Thumbnails", index), 0));
            for (int index = 1, n = count(Ns::Xmp, "PageInfo"); index <= n; ++index) {
                const QByteArray page = item("PageInfo", index);
                metadata.thumbnails.push_back(thumbnail(
                    Ns::Xmp, page, integer(Ns::Xmp, page + '/' + m_t.xmpTPg + "PageNumber")));
            }
            return metadata;
        }

    private:
        XmpPtr m_xmp;
        const Toolkit& m_t;
    };

    ParseFailure toolkitMissing()
    {
        return fail(
            FormatError::UnsupportedVariant, QStringLiteral("XMP: the toolkit cannot start"));
    }

}

std::optional<double> XmpSwatch::component(QStringView componentName) const
{
    for (const XmpColorComponent& entry : components) {
        if (entry.name == componentName)
            return entry.value;
    }
    return std::nullopt;
}

ParseResult<XmpMetadata> parseXmpPacket(QByteArrayView packet)
{
    if (!Toolkit::get().ready)
        return toolkitMissing();
    XmpPacket xmp(xmp_new_empty(), &xmp_free);
    if (!xmp || !xmp_parse(xmp.get(), packet.data(), size_t(packet.size())))
        return fail(FormatError::DamagedFile,
            QStringLiteral("the XMP packet cannot be read (error %1)").arg(xmp_get_error()));
    return Reader(xmp.get()).metadata();
}

ParseResult<XmpMetadata> readXmpOfFile(const QString& path)
{
    if (!Toolkit::get().ready)
        return toolkitMissing();
    XmpFile file(xmp_files_open_new(QFile::encodeName(path).constData(),
                     XmpOpenFileOptions(XMP_OPEN_READ | XMP_OPEN_ONLYXMP)),
        &xmp_files_free);
    if (!file)
        return fail(FormatError::NotThisKind, QStringLiteral("no XMP packet"));
    XmpPacket xmp(xmp_files_get_new_xmp(file.get()), &xmp_free);
    const int error = xmp_get_error();
    xmp_files_close(file.get(), XMP_CLOSE_NOOPTION);
    if (!xmp) {
        // The handlers report "no packet" with no error and a packet they cannot parse with one.
        return error == 0
            ? fail(FormatError::NotThisKind, QStringLiteral("no XMP packet"))
            : fail(FormatError::DamagedFile,
                QStringLiteral("the XMP packet cannot be read (error %1)").arg(error));
    }
    return Reader(xmp.get()).metadata();
}

}
