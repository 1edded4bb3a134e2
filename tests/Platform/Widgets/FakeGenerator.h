// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "QLPreviewItem.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

// Preview generator bundles made by tests: an Info.plist that lists the given types and a shell
// script as the executable. The script gets the generator's command line:
//   $1 preview, $2 FILE, $3 --uti, $4 UTI, $5 --out, $6 DIR
namespace FakeGenerator {

// Writes <library>/QuickLook/<name>.qlgenerator and returns its path. Extra keys go into its
// Info.plist as they are.
QString install(const QString& library, const QString& name, const QStringList& types,
    const QByteArray& script, const QVariantMap& extraInfo = {});

// A small PNG picture at the path.
void writePicture(const QString& path);

}

// A file to preview.
class FileItem : public QLPreviewItem {
public:
    explicit FileItem(const QString& path)
        : m_url(QUrl::fromLocalFile(path))
    {
    }
    QUrl previewItemURL() const override { return m_url; }

private:
    QUrl m_url;
};
