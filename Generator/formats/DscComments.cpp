// SPDX-License-Identifier: GPL-3.0-or-later
#include "DscComments.h"

#include "ByteSearch.h"
#include "DscValues.h"

#include <QSet>

namespace Formats {

namespace {

    // Walks lines ending in CR, LF or CRLF, and can jump over counted binary data.
    class LineCursor {
    public:
        explicit LineCursor(QByteArrayView bytes)
            : m_bytes(bytes)
        {
            qsizetype end = 0;
            while (end < bytes.size() && bytes[end] != '\r' && bytes[end] != '\n')
                ++end;
            m_crOnly = end + 1 < bytes.size() && bytes[end] == '\r' && bytes[end + 1] != '\n';
        }
        bool next(QByteArrayView& line)
        {
            if (m_position >= m_bytes.size())
                return false;
            qsizetype end = m_position;
            while (end < m_bytes.size() && m_bytes[end] != '\r' && m_bytes[end] != '\n')
                ++end;
            line = m_bytes.sliced(m_position, end - m_position);
            if (end < m_bytes.size() && m_bytes[end++] == '\r' && end < m_bytes.size()
                && m_bytes[end] == '\n')
                ++end;
            m_position = end;
            return true;
        }
        void skipBytes(qint64 count)
        {
            m_position += qsizetype(std::clamp<qint64>(count, 0, m_bytes.size() - m_position));
        }
        // Moves to the start of the next line that opens with "%%", past the lines between: the
        // body of a print file is mostly image data, which only comments can matter in. Each
        // line end is searched for once, so the walk stays linear.
        // The line ends are those of the first line: a file written with CR alone has no LF.
        void skipToNextComment()
        {
            if (m_position >= m_bytes.size() || m_bytes.sliced(m_position).startsWith("%%"))
                return;
            const qsizetype next = m_crOnly ? m_afterCr.from(m_bytes, "\r%%", m_position)
                                            : m_afterLf.from(m_bytes, "\n%%", m_position);
            m_position = next < 0 ? m_bytes.size() : next + 1;
        }

    private:
        // The last hit of a marker, kept while it lies ahead of the positions asked about.
        struct Marker {
            qsizetype hit = -2;
            qsizetype from(QByteArrayView bytes, QByteArrayView marker, qsizetype position)
            {
                if (hit == -1 || hit >= position)
                    return hit;
                hit = findBytes(bytes, marker, position);
                return hit;
            }
        };

        QByteArrayView m_bytes;
        qsizetype m_position = 0;
        bool m_crOnly = false;
        Marker m_afterLf;
        Marker m_afterCr;
    };

    struct Comment {
        QByteArrayView keyword; // without the "%%"
        QByteArrayView value; // after the colon, untrimmed
    };

    std::optional<Comment> parseComment(QByteArrayView line)
    {
        if (!line.startsWith("%%"))
            return std::nullopt;
        qsizetype end = 2;
        while (end < line.size() && line[end] != ':' && line[end] != ' ' && line[end] != '\t')
            ++end;
        Comment comment { line.sliced(2, end - 2), line.sliced(end) };
        if (comment.value.startsWith(':'))
            comment.value = comment.value.sliced(1);
        return comment;
    }

    std::optional<DscBoundingBox> parseBox(QByteArrayView value)
    {
        const QStringList parts = DscValues::tokens(value);
        if (parts.size() != 4)
            return std::nullopt;
        double numbers[4];
        for (int i = 0; i < 4; ++i) {
            const auto number = DscValues::number(parts[i]);
            if (!number)
                return std::nullopt;
            numbers[i] = *number;
        }
        return DscBoundingBox { numbers[0], numbers[1], numbers[2], numbers[3] };
    }

    bool isResourceType(const QString& token)
    {
        static const QSet<QString> types { QStringLiteral("font"), QStringLiteral("procset"),
            QStringLiteral("file"), QStringLiteral("pattern"), QStringLiteral("form"),
            QStringLiteral("encoding") };
        return types.contains(token);
    }

    void appendUnique(QStringList& list, const QString& value)
    {
        if (!value.isEmpty() && !list.contains(value))
            list.append(value);
    }

    enum class Section { Header, Body, Trailer };

    class Reader {
    public:
        explicit Reader(DscDocument& document)
            : m_document(document)
        {
        }

        void read(LineCursor& cursor);

    private:
        void outerComment(const Comment& comment);
        void listValue(QByteArrayView keyword, QByteArrayView value);
        void resources(QStringList& fonts, QStringList& procSets, QByteArrayView value);
        void customColors(DscCustomColor::Model model, int count, QByteArrayView value);
        void addColor(DscCustomColor color);
        void preview(LineCursor& cursor, QByteArrayView value);
        void skipData(LineCursor& cursor, QByteArrayView keyword, QByteArrayView value);

        template <typename T>
        void scalar(QByteArrayView keyword, std::optional<T>& target, QByteArrayView value,
            std::optional<T> parsed)
        {
            if (DscValues::isAtEnd(value)) {
                m_atEnd.insert(keyword.toByteArray());
            } else if (!target
                && (m_section == Section::Header || m_atEnd.contains(keyword.toByteArray()))) {
                target = parsed;
            }
        }

        DscDocument& m_document;
        Section m_section = Section::Header;
        int m_depth = 0;
        QSet<QByteArray> m_atEnd;
        QByteArray m_lastKeyword; // the comment that "%%+" continues
    };

    void Reader::read(LineCursor& cursor)
    {
        QByteArrayView line;
        while (true) {
            if (m_section == Section::Body && m_depth == 0)
                cursor.skipToNextComment();
            if (!cursor.next(line))
                break;
            const std::optional<Comment> comment = parseComment(line);
            if (!comment) {
                if (m_section == Section::Header && m_depth == 0 && !line.startsWith('%'))
                    m_section = Section::Body;
                continue;
            }
            const QByteArrayView keyword = comment->keyword;
            if (keyword == "BeginData" || keyword == "BeginBinary") {
                skipData(cursor, keyword, comment->value);
            } else if (keyword == "BeginDocument") {
                m_document.nestedDocuments += m_depth == 0 ? 1 : 0;
                ++m_depth;
            } else if (keyword == "EndDocument") {
                m_depth = std::max(0, m_depth - 1);
            } else if (m_depth > 0) {
                continue; // the comments of an embedded document are its own
            } else if (keyword == "EOF") {
                m_document.reachesEndOfFile = true;
                return; // what follows belongs to no page of this document
            } else if (keyword == "EndComments") {
                m_section = Section::Body;
            } else if (keyword == "Trailer") {
                m_section = Section::Trailer;
            } else if (keyword == "BeginPreview") {
                preview(cursor, comment->value);
            } else if (m_section != Section::Body) {
                outerComment(*comment);
            }
        }
    }

    void Reader::outerComment(const Comment& comment)
    {
        const QByteArrayView keyword = comment.keyword;
        const QByteArrayView value = comment.value;
        if (keyword == "Title") {
            if (m_document.title.isNull())
                m_document.title = DscValues::text(value);
        } else if (keyword == "Creator") {
            if (m_document.creator.isNull())
                m_document.creator = DscValues::text(value);
        } else if (keyword == "BoundingBox") {
            scalar(keyword, m_document.boundingBox, value, parseBox(value));
        } else if (keyword == "HiResBoundingBox") {
            scalar(keyword, m_document.hiResBoundingBox, value, parseBox(value));
        } else if (keyword == "Pages") {
            const QStringList parts = DscValues::tokens(value);
            const auto count = parts.isEmpty() ? std::nullopt : DscValues::number(parts.first());
            scalar(keyword, m_document.pages, value,
                count && *count >= 0 && *count < 1e9 ? std::optional<int>(int(*count))
                                                     : std::nullopt);
        } else if (keyword == "+") {
            listValue(m_lastKeyword, value);
            return;
        } else {
            if (DscValues::isAtEnd(value))
                m_atEnd.insert(keyword.toByteArray());
            else
                listValue(keyword, value);
        }
        m_lastKeyword = keyword.toByteArray();
    }

    void Reader::listValue(QByteArrayView keyword, QByteArrayView value)
    {
        if (keyword == "DocumentFonts") {
            for (const QString& font : DscValues::tokens(value))
                appendUnique(m_document.documentFonts, font);
        } else if (keyword == "DocumentNeededFonts") {
            for (const QString& font : DscValues::tokens(value))
                appendUnique(m_document.neededFonts, font);
        } else if (keyword == "DocumentSuppliedFonts") {
            for (const QString& font : DscValues::tokens(value))
                appendUnique(m_document.suppliedFonts, font);
        } else if (keyword == "DocumentNeededResources") {
            resources(m_document.neededFonts, m_document.neededProcSets, value);
        } else if (keyword == "DocumentSuppliedResources") {
            resources(m_document.suppliedFonts, m_document.suppliedProcSets, value);
        } else if (keyword == "CMYKCustomColor") {
            customColors(DscCustomColor::Model::Cmyk, 4, value);
        } else if (keyword == "RGBCustomColor") {
            customColors(DscCustomColor::Model::Rgb, 3, value);
        } else if (keyword == "DocumentCustomColors") {
            for (const QString& name : DscValues::tokens(value))
                addColor({ name, DscCustomColor::Model::Unspecified, {} });
        }
    }

    // "font Times-Roman Helvetica procset Adobe_X 1.0 0": the type word applies to the names
    // after it, up to the next type word; a procedure set's name is followed by its version and
    // revision.
    void Reader::resources(QStringList& fonts, QStringList& procSets, QByteArrayView value)
    {
        QString type;
        int procSetField = 0;
        for (const QString& token : DscValues::tokens(value)) {
            if (isResourceType(token)) {
                type = token;
                procSetField = 0;
            } else if (type == u"font") {
                appendUnique(fonts, token);
            } else if (type == u"procset") {
                if (procSetField > 0 && procSetField < 3 && DscValues::number(token)) {
                    ++procSetField;
                } else {
                    appendUnique(procSets, token);
                    procSetField = 1;
                }
            }
        }
    }

    // Groups of count numbers, each followed by the colour's name.
    void Reader::customColors(DscCustomColor::Model model, int count, QByteArrayView value)
    {
        std::vector<double> numbers;
        for (const QString& token : DscValues::tokens(value)) {
            if (const auto number = DscValues::number(token)) {
                numbers.push_back(*number);
                continue;
            }
            if (int(numbers.size()) >= count)
                addColor(
                    { token, model, std::vector<double>(numbers.end() - count, numbers.end()) });
            numbers.clear();
        }
    }

    // A colour named again keeps its place and takes the values of the later comment when it
    // had none.
    void Reader::addColor(DscCustomColor color)
    {
        if (color.name.isEmpty())
            return;
        for (DscCustomColor& existing : m_document.customColors) {
            if (existing.name == color.name) {
                if (existing.model == DscCustomColor::Model::Unspecified)
                    existing = std::move(color);
                return;
            }
        }
        m_document.customColors.push_back(std::move(color));
    }

    // "%%BeginPreview: width height depth lines", then lines of "%" and hexadecimal digits.
    void Reader::preview(LineCursor& cursor, QByteArrayView value)
    {
        const QStringList parts = DscValues::tokens(value);
        DscPreview preview;
        if (parts.size() >= 3) {
            preview.width = parts[0].toInt();
            preview.height = parts[1].toInt();
            preview.depth = parts[2].toInt();
        }
        QByteArray hex;
        QByteArrayView line;
        while (cursor.next(line) && line.startsWith('%') && !line.startsWith("%%EndPreview"))
            hex.append(line.sliced(1).trimmed());
        preview.data = QByteArray::fromHex(hex);
        if (!m_document.preview)
            m_document.preview = std::move(preview);
    }

    // "%%BeginBinary: bytes" and "%%BeginData: count [type [Bytes|Lines]]".
    void Reader::skipData(LineCursor& cursor, QByteArrayView keyword, QByteArrayView value)
    {
        const QStringList parts = DscValues::tokens(value);
        const auto count = parts.isEmpty() ? std::nullopt : DscValues::number(parts.first());
        if (!count || *count <= 0)
            return;
        if (keyword == "BeginData" && parts.size() >= 3 && parts[2] == u"Lines") {
            QByteArrayView line;
            for (double i = 0; i < *count && cursor.next(line); ++i) { }
            return;
        }
        cursor.skipBytes(qint64(std::min(*count, 9e15)));
    }

}

std::optional<DscBoundingBox> DscDocument::usableBoundingBox() const
{
    if (hiResBoundingBox && !hiResBoundingBox->isEmpty())
        return hiResBoundingBox;
    if (boundingBox && !boundingBox->isEmpty())
        return boundingBox;
    return std::nullopt;
}

QStringList DscDocument::fonts() const
{
    QStringList all;
    for (const QStringList* list : { &documentFonts, &neededFonts, &suppliedFonts }) {
        for (const QString& font : *list)
            appendUnique(all, font);
    }
    return all;
}

QStringList DscDocument::missingProcSets() const
{
    QStringList missing;
    for (const QString& procSet : neededProcSets) {
        if (!suppliedProcSets.contains(procSet))
            missing.append(procSet);
    }
    return missing;
}

ParseResult<DscDocument> parseDscComments(QByteArrayView bytes)
{
    DscDocument document;
    QByteArrayView postScript = bytes;
    if (hasEpsBinarySignature(bytes)) {
        auto header = readEpsBinaryHeader(bytes);
        if (!header)
            return header.failure();
        document.binaryHeader = header.value();
        postScript = bytes.sliced(header->postScript.offset, header->postScript.length);
        document.postScriptOffset = header->postScript.offset;
    }
    // A control-D before the first line is a leftover of serial printers.
    if (postScript.startsWith('\x04')) {
        postScript = postScript.sliced(1);
        ++document.postScriptOffset;
    }
    document.postScriptLength = postScript.size();
    if (!postScript.startsWith("%!"))
        return fail(document.binaryHeader ? FormatError::DamagedFile : FormatError::NotThisKind,
            QStringLiteral("PostScript: no %! line at the start"));

    LineCursor cursor(postScript);
    QByteArrayView versionLine;
    cursor.next(versionLine);
    document.versionLine = QString::fromLatin1(versionLine);
    document.encapsulated = versionLine.contains(" EPSF-");
    Reader(document).read(cursor);
    return document;
}

}
