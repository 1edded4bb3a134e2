// SPDX-License-Identifier: GPL-3.0-or-later
// The readers of this folder over damaged copies of the samples: cut at many lengths and with
// bytes overwritten. Each must give content or an error with a reason, never crash or hang.
#include "KindsTestData.h"
#include "SwatchSheet.h"

#include <functional>
#include <gtest/gtest.h>

using namespace Preview;
using namespace KindsTestData;

namespace {

// Gives the reason of a failure, empty on success.
using Reader = std::function<QString(const QByteArray&)>;

template <typename T> QString reasonOf(const Formats::ParseResult<T>& result)
{
    if (result.ok())
        return {};
    return result.reason().isEmpty() ? QStringLiteral("(no reason)") : result.reason();
}

std::vector<QByteArray> damagedCopies(const QByteArray& whole)
{
    std::vector<QByteArray> copies;
    const qsizetype step = std::max<qsizetype>(1, whole.size() / 97);
    for (qsizetype length = 0; length < whole.size(); length += step)
        copies.push_back(whole.left(length));
    for (qsizetype at = 0; at < whole.size(); at += step) {
        QByteArray copy = whole;
        for (qsizetype i = at; i < std::min(whole.size(), at + 8); ++i)
            copy[i] = char(copy[i] ^ 0xA5);
        copies.push_back(copy);
    }
    return copies;
}

}

TEST(MutationReplay, damagedSamplesFailCleanly)
{
    struct Case {
        const char* sample;
        Reader read;
    };
    const Case cases[] = {
        { "formats/ase/solarized.ase",
            [](const QByteArray& bytes) {
                const auto document = Formats::parseSwatchExchange(bytes);
                if (document.ok())
                    drawSwatchSheet(*document, QStringLiteral("t"));
                return reasonOf(document);
            } },
    };
    for (const Case& c : cases) {
        int failures = 0;
        for (const QByteArray& copy : damagedCopies(sample(QString::fromLatin1(c.sample)))) {
            const QString reason = c.read(copy);
            EXPECT_NE(reason, QStringLiteral("(no reason)")) << c.sample;
            failures += reason.isEmpty() ? 0 : 1;
        }
        EXPECT_GT(failures, 0) << c.sample << ": no damaged copy was refused";
    }
}
