// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

// Something a preview view can show: for now, a file.
class QLPreviewItem {
public:
    virtual ~QLPreviewItem() = default;
    virtual QUrl previewItemURL() const = 0;
};
