// SPDX-License-Identifier: GPL-3.0-or-later
// A Swatch Exchange sample cut at many lengths and with bytes overwritten: each copy gives a
// sheet or an error with a reason, never a crash or a hang.
#include "KindsTestData.h"
#include "SwatchSheet.h"

#include <gtest/gtest.h>

using namespace Preview;
using namespace KindsTestData;

TEST(MutationReplay, damagedSamplesFailCleanly)
{
    const QByteArray whole = sample(QStringLiteral("formats/ase/solarized.ase"));
    std::vector<QByteArray> copies;
    const qsizetype step = std::max<qsizetype>(1, whole.size() / 97);
    for (qsizetype at = 0; at < whole.size(); at += step) {
        copies.push_back(whole.left(at));
        QByteArray copy = whole;
        for (qsizetype i = at; i < std::min(whole.size(), at + 8); ++i)
            copy[i] = char(copy[i] ^ 0xA5);
        copies.push_back(copy);
    }
    int failures = 0;
    for (const QByteArray& copy : copies) {
        const auto document = Formats::parseSwatchExchange(copy);
        if (document.ok()) {
            drawSwatchSheet(*document, QStringLiteral("t"));
        } else {
            EXPECT_FALSE(document.reason().isEmpty());
            ++failures;
        }
    }
    EXPECT_GT(failures, 0) << "no damaged copy was refused";
}
