// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "InterchangeParts.h"
#include "ParseResult.h"

#include <QByteArrayView>
#include <QString>
#include <vector>

namespace Formats {

// Reads an INX document: XML whose prologue holds an "aid" processing instruction. Its colours
// (colr elements) and fonts (FonT elements) come from the XML, its metadata from the XMP packet
// it carries as the contents of its metadata element (cMep). XML that breaks off keeps what came
// before it and notes the fault in problems.
ParseResult<InterchangeParts> readInxDocument(QByteArrayView bytes);

// INX writes every attribute value with a type tag: "c_Times", "k_Regular", "e_CMYK", "b_t".
// The value without its tag.
QString inxText(const QString& value);
// A list value, "x_4_D_0_D_0_D_0_D_100": its numbers. Empty when it is not a list of numbers.
std::vector<double> inxNumbers(const QString& value);

}
