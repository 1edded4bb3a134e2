// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUAppcast.h"

#include "SUVersionComparison.h"

#include <QXmlStreamReader>

namespace {

QString trimmedText(QXmlStreamReader& xml)
{
    return xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
}

void readEnclosure(QXmlStreamReader& xml, SUAppcastItem& item)
{
    const QXmlStreamAttributes attributes = xml.attributes();
    const QString sparkle = QString::fromLatin1(SUAppcast::sparkleNamespace);
    item.fileURL = QUrl(attributes.value(QStringLiteral("url")).toString().trimmed());
    item.contentLength = attributes.value(QStringLiteral("length")).toLongLong();
    item.mimeType = attributes.value(QStringLiteral("type")).toString();
    item.edSignature = attributes.value(sparkle, QStringLiteral("edSignature")).toString();
    // Versions on the enclosure are the older way of writing them; the item's own elements win.
    if (item.versionString.isEmpty())
        item.versionString = attributes.value(sparkle, QStringLiteral("version")).toString();
    if (item.displayVersionString.isEmpty())
        item.displayVersionString
            = attributes.value(sparkle, QStringLiteral("shortVersionString")).toString();
    xml.skipCurrentElement();
}

SUAppcastItem readItem(QXmlStreamReader& xml)
{
    SUAppcastItem item;
    const QString sparkle = QString::fromLatin1(SUAppcast::sparkleNamespace);
    while (xml.readNextStartElement()) {
        const QStringView name = xml.name();
        if (xml.namespaceUri().isEmpty()) {
            if (name == u"title")
                item.title = trimmedText(xml);
            else if (name == u"link")
                item.infoURL = QUrl(trimmedText(xml));
            else if (name == u"description")
                item.itemDescription = trimmedText(xml);
            else if (name == u"pubDate")
                item.dateString = trimmedText(xml);
            else if (name == u"enclosure")
                readEnclosure(xml, item);
            else
                xml.skipCurrentElement();
        } else if (xml.namespaceUri() == sparkle) {
            if (name == u"version")
                item.versionString = trimmedText(xml);
            else if (name == u"shortVersionString")
                item.displayVersionString = trimmedText(xml);
            else if (name == u"releaseNotesLink")
                item.releaseNotesURL = QUrl(trimmedText(xml));
            else if (name == u"minimumSystemVersion")
                item.minimumSystemVersion = trimmedText(xml);
            else if (name == u"maximumSystemVersion")
                item.maximumSystemVersion = trimmedText(xml);
            else if (name == u"phasedRolloutInterval")
                item.phasedRolloutInterval = std::max(qint64(0), trimmedText(xml).toLongLong());
            else if (name == u"criticalUpdate") {
                item.criticalUpdate = true;
                item.criticalUpdateVersion
                    = xml.attributes().value(sparkle, QStringLiteral("version")).toString();
                xml.skipCurrentElement();
            } else
                xml.skipCurrentElement();
        } else {
            xml.skipCurrentElement();
        }
    }
    return item;
}

}

std::optional<SUAppcast> SUAppcast::fromData(const QByteArray& data, QString* error)
{
    const auto fail = [error](const QString& message) -> std::optional<SUAppcast> {
        if (error)
            *error = message;
        return std::nullopt;
    };

    QXmlStreamReader xml(data);
    SUAppcast appcast;
    int itemCount = 0;
    if (xml.readNextStartElement()) {
        if (xml.name() != u"rss" || !xml.namespaceUri().isEmpty())
            return fail(
                QStringLiteral("The document is not an RSS feed (its root element is <%1>).")
                    .arg(xml.qualifiedName()));
        while (xml.readNextStartElement()) {
            if (xml.name() != u"channel" || !xml.namespaceUri().isEmpty()) {
                xml.skipCurrentElement();
                continue;
            }
            while (xml.readNextStartElement()) {
                if (xml.name() == u"item" && xml.namespaceUri().isEmpty()) {
                    ++itemCount;
                    SUAppcastItem item = readItem(xml);
                    if (!item.versionString.isEmpty())
                        appcast.m_items.append(item);
                } else {
                    xml.skipCurrentElement();
                }
            }
        }
    }
    // Read to the end so that damage after the last item is noticed too.
    while (!xml.atEnd())
        xml.readNext();
    if (xml.hasError()) {
        QString reason = xml.errorString();
        if (reason.endsWith(u'.'))
            reason.chop(1);
        return fail(QStringLiteral("The feed is not well-formed XML (line %1, column %2: %3).")
                        .arg(xml.lineNumber())
                        .arg(xml.columnNumber())
                        .arg(reason));
    }
    if (itemCount == 0)
        return fail(QStringLiteral("The feed lists no updates."));
    if (appcast.m_items.isEmpty())
        return fail(QStringLiteral("No update in the feed gives its version."));
    return appcast;
}

std::optional<SUAppcastItem> SUAppcast::newest(
    const std::function<bool(const SUAppcastItem&)>& accepts) const
{
    std::optional<SUAppcastItem> best;
    for (const SUAppcastItem& item : m_items) {
        if (!accepts(item))
            continue;
        if (!best
            || SUVersionComparison::compareVersions(item.versionString, best->versionString) > 0)
            best = item;
    }
    return best;
}

std::optional<SUAppcastItem> SUAppcast::bestItem(
    const QString& systemVersion, const SUAppcastRollout& rollout) const
{
    return newest([&](const SUAppcastItem& item) {
        return item.supportsSystem(systemVersion) && rollout.reaches(item);
    });
}

std::optional<SUAppcastItem> SUAppcast::newestItem() const
{
    return newest([](const SUAppcastItem&) { return true; });
}

bool SUAppcastRollout::reaches(const SUAppcastItem& item) const
{
    if (group < 0 || item.phasedRolloutInterval <= 0 || item.isCriticalFor(hostVersion))
        return true;
    const QDateTime published = item.date();
    return !published.isValid()
        || now >= published.addSecs(qint64(group) * item.phasedRolloutInterval);
}
