// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileKindSniffer.h"

#include "EpsBinaryHeader.h"
#include "InDesignHeader.h"

#include <QFileInfo>

namespace Formats {

namespace {

    QString suffixOf(const QString& fileName) { return QFileInfo(fileName).suffix().toLower(); }

    bool namedIllustrator(const QString& fileName)
    {
        const QString suffix = suffixOf(fileName);
        return suffix == u"ai" || suffix == u"ait";
    }

    FileKind pdfKind(QByteArrayView head, const QString& fileName)
    {
        // Illustrator keeps its own data in the PDF and names itself in the XMP near the start.
        for (QByteArrayView marker :
            { QByteArrayView("AIPrivateData"), QByteArrayView("AIPDFPrivateData"),
                QByteArrayView("AIMetaData"), QByteArrayView(">Adobe Illustrator") }) {
            if (head.contains(marker))
                return FileKind::IllustratorPdf;
        }
        return namedIllustrator(fileName) ? FileKind::IllustratorPdf : FileKind::Unknown;
    }

    QByteArrayView firstLine(QByteArrayView bytes)
    {
        qsizetype end = 0;
        while (end < bytes.size() && bytes[end] != '\r' && bytes[end] != '\n')
            ++end;
        return bytes.first(end);
    }

    bool createdByIllustrator(QByteArrayView head)
    {
        for (QByteArrayView marker : { QByteArrayView("%%Creator: Adobe Illustrator"),
                 QByteArrayView("%%Creator:Adobe Illustrator") }) {
            if (head.contains(marker))
                return true;
        }
        return false;
    }

    // Any PostScript is drawn as an EPS: print drivers write EPS whose first line names no EPSF
    // version, and Ghostscript says soon enough what it cannot draw.
    FileKind postScriptKind(QByteArrayView postScript, const QString& fileName)
    {
        if (createdByIllustrator(postScript)
            && (namedIllustrator(fileName) || !firstLine(postScript).contains(" EPSF-")))
            return FileKind::IllustratorPostScript;
        return FileKind::Eps;
    }

    bool isInterchange(QByteArrayView head)
    {
        QByteArrayView text = head;
        if (text.startsWith("\xEF\xBB\xBF"))
            text = text.sliced(3);
        if (!text.startsWith("<?xml"))
            return false;
        // The <?aid processing instruction follows the XML declaration.
        return text.first(std::min<qsizetype>(text.size(), 1024)).contains("<?aid ");
    }

    bool isIdml(QByteArrayView head)
    {
        // A ZIP whose first entry is a stored file "mimetype" holding the package's type: its
        // name starts at byte 30 of the local header and its content follows the name.
        static constexpr QByteArrayView Entry("mimetype");
        static constexpr QByteArrayView Type("application/vnd.adobe.indesign-idml-package");
        if (!head.startsWith("PK\x03\x04") || head.size() < 30)
            return false;
        const int nameLength = std::uint8_t(head[26]) | std::uint8_t(head[27]) << 8;
        const int extraLength = std::uint8_t(head[28]) | std::uint8_t(head[29]) << 8;
        if (nameLength != Entry.size() || head.size() < 30 + nameLength + extraLength + Type.size())
            return false;
        return head.sliced(30, nameLength) == Entry
            && head.sliced(30 + nameLength + extraLength).startsWith(Type);
    }

    bool isFreeHand(QByteArrayView head)
    {
        // FreeHand 1 files start with "acf3" (the type the original platform filed them under),
        // FreeHand 2 and 3 with "FHD2" and "FHD3"; later versions carry an "AGD" chunk signature
        // followed by its version digit near the start, behind a header of their own, and
        // FreeHand MX starts with "FH" and a version.
        if (head.startsWith("acf3"))
            return true;
        if (head.size() >= 3 && head.startsWith("FH")
            && (head[2] == 'D' || (head[2] >= '0' && head[2] <= '9')))
            return true;
        const QByteArrayView start = head.first(std::min<qsizetype>(head.size(), 4096));
        for (qsizetype at = start.indexOf("AGD"); at >= 0 && at + 3 < start.size();
             at = start.indexOf("AGD", at + 1)) {
            if (start[at + 3] >= '1' && start[at + 3] <= '9')
                return true;
        }
        return false;
    }

}

QString fileKindName(FileKind kind)
{
    switch (kind) {
    case FileKind::Unknown:
        return QStringLiteral("unknown");
    case FileKind::IllustratorPdf:
        return QStringLiteral("Illustrator (PDF)");
    case FileKind::IllustratorPostScript:
        return QStringLiteral("Illustrator (PostScript)");
    case FileKind::Eps:
        return QStringLiteral("EPS");
    case FileKind::InDesign:
        return QStringLiteral("InDesign");
    case FileKind::InDesignInterchange:
        return QStringLiteral("InDesign Interchange");
    case FileKind::Idml:
        return QStringLiteral("IDML");
    case FileKind::FreeHand:
        return QStringLiteral("FreeHand");
    case FileKind::SwatchExchange:
        return QStringLiteral("Swatch Exchange");
    }
    return QStringLiteral("unknown");
}

FileKind sniffFileKind(QByteArrayView head, const QString& fileName)
{
    if (head.startsWith("ASEF"))
        return FileKind::SwatchExchange;
    if (head.startsWith(inDesignHeaderGuid()))
        return FileKind::InDesign;
    if (head.startsWith("%PDF"))
        return pdfKind(head, fileName);
    if (hasEpsBinarySignature(head))
        return FileKind::Eps;
    if (head.startsWith("%!") || head.startsWith("\x04%!"))
        return postScriptKind(head, fileName);
    if (isInterchange(head))
        return FileKind::InDesignInterchange;
    if (isIdml(head))
        return FileKind::Idml;
    if (isFreeHand(head))
        return FileKind::FreeHand;
    return FileKind::Unknown;
}

}
