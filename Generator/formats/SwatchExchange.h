// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ParseResult.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <cstdint>
#include <vector>

namespace Formats {

enum class AseColorModel { Cmyk, Rgb, Lab, Gray, Unknown };

// The swatch type as stored; values other than these three are kept as they are.
enum class AseSwatchType : std::uint16_t { Global = 0, Spot = 1, Normal = 2 };

struct AseSwatch {
    QString name;
    AseColorModel model = AseColorModel::Unknown;
    QByteArray modelCode; // the four bytes as written, e.g. "RGB "
    // CMYK and RGB 0..1; LAB with L 0..1 and a, b as signed numbers; Gray 0..1. An unknown
    // model keeps every number that stands before its type.
    std::vector<float> values;
    AseSwatchType type = AseSwatchType::Normal;
};

struct AseGroup {
    QString name;
    std::vector<AseSwatch> swatches;
    std::vector<AseGroup> groups; // nested groups, rare but legal
};

// Swatches outside any group and the groups, each in file order. Where loose swatches and
// groups are interleaved, only the order within each list is kept.
struct AseDocument {
    std::uint16_t majorVersion = 0;
    std::uint16_t minorVersion = 0;
    std::vector<AseSwatch> swatches;
    std::vector<AseGroup> groups;
};

// Reads a Swatch Exchange file. A file cut short anywhere is a damaged file; a major version
// other than 1 is an unsupported variant. A group end without a group start is ignored and
// groups left open at the end are closed, as the applications that write these files do.
ParseResult<AseDocument> parseSwatchExchange(QByteArrayView bytes);

int aseComponentCount(AseColorModel model);

}
