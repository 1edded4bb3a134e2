// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewContent.h"

namespace Preview {

QImage PreviewPage::picture() const
{
    if (!image.isNull())
        return image;
    return QImage::fromData(encoded, encodedFormat.isEmpty() ? nullptr : qPrintable(encodedFormat));
}

}
