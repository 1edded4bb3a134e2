// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewContent.h"

namespace Preview {

QImage PreviewPage::picture() const
{
    if (!image.isNull())
        return image;
    return QImage::fromData(encoded, encodedFormat.isEmpty() ? nullptr : qPrintable(encodedFormat));
}

namespace {

    void limit(QString& text)
    {
        if (text.size() > MostTextLength)
            text = text.first(MostTextLength - 1) + QChar(0x2026);
    }

    template <typename T> int keepFirst(std::vector<T>& entries, size_t most)
    {
        const int leftOut = int(entries.size() > most ? entries.size() - most : 0);
        if (leftOut > 0)
            entries.resize(most);
        return leftOut;
    }

}

void limitContent(PreviewContent& content)
{
    limit(content.title);
    limit(content.kindName);
    for (PreviewFact& fact : content.facts) {
        limit(fact.label);
        limit(fact.value);
    }
    if (content.notes.size() > MostNotes)
        content.notes.resize(MostNotes);
    for (QString& note : content.notes)
        limit(note);
    for (PreviewPage& page : content.pages)
        limit(page.label);

    content.fontsLeftOut += keepFirst(content.fonts, MostPanelEntries);
    for (PreviewFont& font : content.fonts) {
        for (QString* text : { &font.name, &font.family, &font.style, &font.kind, &font.fileName })
            limit(*text);
    }
    content.linksLeftOut += keepFirst(content.links, MostPanelEntries);
    for (PreviewLink& link : content.links) {
        if (link.path.size() > MostPathLength) {
            link.exists = false;
            link.path = link.path.first(MostPathLength) + QChar(0x2026);
        }
    }
    size_t room = MostPanelEntries;
    for (PreviewSwatchGroup& group : content.swatchGroups) {
        limit(group.name);
        content.swatchesLeftOut += keepFirst(group.swatches, room);
        room -= group.swatches.size();
        for (PreviewSwatch& swatch : group.swatches) {
            limit(swatch.name);
            limit(swatch.model);
            if (swatch.values.size() > 16)
                swatch.values.resize(16);
        }
    }
}

}
