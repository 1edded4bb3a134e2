// SPDX-License-Identifier: GPL-3.0-or-later
#include "Localization.h"

#include "Bundle.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>
#include <QTranslator>

namespace Localization {

bool installTranslations(const Bundle& bundle)
{
    const QString name = QFileInfo(bundle.executablePath()).fileName();
    if (name.isEmpty() || !QCoreApplication::instance())
        return false;
    auto* translator = new QTranslator(QCoreApplication::instance());
    // The default locale is the system's unless the application chose another.
    if (!translator->load(QLocale(), name, QStringLiteral("_"),
            bundle.resourcePath() + QStringLiteral("/translations"))) {
        delete translator;
        return false;
    }
    return QCoreApplication::installTranslator(translator);
}

QString localizedString(const QString& key, const char* table)
{
    return QCoreApplication::translate(table, key.toUtf8().constData());
}

}
