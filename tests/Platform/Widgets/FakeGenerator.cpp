// SPDX-License-Identifier: GPL-3.0-or-later
#include "FakeGenerator.h"

#include "PropertyList.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <gtest/gtest.h>

namespace FakeGenerator {

QString install(const QString& library, const QString& name, const QStringList& types,
    const QByteArray& script, const QVariantMap& extraInfo)
{
    const QString bundle
        = QDir(library).filePath(QStringLiteral("QuickLook/%1.qlgenerator").arg(name));
    const QVariantList typeList(types.cbegin(), types.cend());
    QVariantMap info { { QStringLiteral("CFBundleExecutable"), name },
        { QStringLiteral("CFBundleDocumentTypes"),
            QVariantList { QVariantMap { { QStringLiteral("LSItemContentTypes"), typeList } } } } };
    info.insert(extraInfo);
    EXPECT_TRUE(
        PropertyList::writeXmlAtomically(info, bundle + QStringLiteral("/Contents/Info.plist")));
    const QString executable = bundle + QStringLiteral("/Contents/Linux/") + name;
    TestEnvironment::writeFile(executable, "#!/bin/sh\n" + script + "\n");
    QFile::setPermissions(executable, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return bundle;
}

void writePicture(const QString& path)
{
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QDir().mkpath(QFileInfo(path).absolutePath());
    ASSERT_TRUE(image.save(path, "PNG"));
}

}
