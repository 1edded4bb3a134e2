// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewContent.h"

#include <QString>
#include <QStringList>
#include <vector>

namespace Preview {

// Which installed font files (fontconfig) provide a font: matched by PostScript name, else by
// family and style. Only exact matches count; fontconfig's nearest substitute does not.
QStringList installedFontFiles(
    const QString& postScriptName, const QString& family = {}, const QString& style = {});

// Fills installedFiles of every font that has none yet.
void findInstalledFonts(std::vector<PreviewFont>& fonts);

}
