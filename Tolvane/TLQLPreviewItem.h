// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "QLPreviewItem.h"

// The file a document window previews. A new item is made for every update of the preview.
class TLQLPreviewItem : public QLPreviewItem {
public:
    explicit TLQLPreviewItem(QUrl url)
        : m_url(std::move(url))
    {
    }

    QUrl previewItemURL() const override { return m_url; }

private:
    const QUrl m_url;
};
