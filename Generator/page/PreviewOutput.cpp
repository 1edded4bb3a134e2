// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewOutput.h"

#include "HtmlPage.h"
#include "OutputFile.h"
#include "PngEncoding.h"

#include <QDir>

namespace Preview {

namespace {

    QString extensionFor(const QString& format)
    {
        const QString lower = format.toLower();
        if (lower == u"jpeg" || lower == u"jpg")
            return QStringLiteral("jpg");
        if (lower == u"png" || lower == u"gif")
            return lower;
        return {};
    }

}

QString writePreview(
    const PreviewContent& content, const VTPreviewSettings& settings, const QString& folder)
{
    if (!QDir().mkpath(folder))
        return QStringLiteral("cannot make the folder %1").arg(QDir::toNativeSeparators(folder));
    const QDir dir(folder);
    std::vector<QString> pictureFiles;
    for (size_t i = 0; i < content.pages.size(); ++i) {
        const PreviewPage& page = content.pages[i];
        QString extension = extensionFor(page.encodedFormat);
        QByteArray bytes = page.encoded;
        // Encoded pictures of a format a web view may not show are written as PNG.
        if (!page.image.isNull() || extension.isEmpty()) {
            bytes = encodePng(page.picture());
            extension = QStringLiteral("png");
        }
        if (bytes.isEmpty()) {
            pictureFiles.emplace_back();
            continue;
        }
        const QString name = QStringLiteral("page-%1.%2").arg(i + 1).arg(extension);
        if (QString error = writeOutputFile(dir.filePath(name), bytes); !error.isEmpty())
            return error;
        pictureFiles.push_back(name);
    }
    return writeOutputFile(dir.filePath(QStringLiteral("index.html")),
        htmlPage(content, settings, pictureFiles).toUtf8());
}

}
