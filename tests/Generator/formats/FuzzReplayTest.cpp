// SPDX-License-Identifier: GPL-3.0-or-later
// Replays the sample files, and many truncated and mutated variants of them, through the fuzz
// entry points, so that the normal test run exercises them as the fuzzers do.
#include "FuzzEntryPoints.h"
#include "TestEnvironment.h"

#include <QDir>
#include <gtest/gtest.h>
#include <random>

namespace {

using FuzzEntryPoints::EntryPoint;

bool run(EntryPoint entry, const QByteArray& bytes)
{
    return entry(
        reinterpret_cast<const std::uint8_t*>(bytes.constData()), std::size_t(bytes.size()));
}

QList<QByteArray> corpus()
{
    QList<QByteArray> files;
    for (const char* folder : { "ase", "samples" }) {
        const QDir dir(
            TestEnvironment::dataPath(QStringLiteral("formats/") + QLatin1String(folder)));
        for (const QString& name : dir.entryList(QDir::Files, QDir::Name)) {
            if (!name.endsWith(u".txt") && !name.endsWith(u".json"))
                files.append(TestEnvironment::readFile(dir.filePath(name)));
        }
    }
    return files;
}

// Positions worth changing: the start, where headers and signatures are, and a spread of others.
qsizetype mutationPosition(std::mt19937& random, qsizetype size)
{
    if (random() % 2 == 0)
        return qsizetype(random() % std::min<qsizetype>(size, 512));
    return qsizetype(random() % size);
}

QByteArray mutated(const QByteArray& original, std::mt19937& random)
{
    QByteArray bytes = original;
    const int edits = 1 + int(random() % 4);
    for (int i = 0; i < edits && !bytes.isEmpty(); ++i) {
        const qsizetype at = mutationPosition(random, bytes.size());
        switch (random() % 5) {
        case 0:
            bytes[at] = char(bytes[at] ^ (1 << (random() % 8)));
            break;
        case 1:
            bytes[at] = char(random() % 2 ? 0xFF : 0x00);
            break;
        case 2:
            bytes.remove(at, qsizetype(1 + random() % 16));
            break;
        case 3:
            bytes.insert(at,
                bytes.mid(mutationPosition(random, bytes.size()), qsizetype(1 + random() % 32)));
            break;
        default:
            bytes.truncate(at);
            break;
        }
    }
    return bytes;
}

class FuzzReplay : public testing::TestWithParam<FuzzEntryPoints::Target> { };

}

TEST_P(FuzzReplay, samplesAndTheirVariantsKeepThePromises)
{
    const EntryPoint entry = GetParam().run;
    const QList<QByteArray> files = corpus();
    ASSERT_GE(files.size(), 20);
    std::mt19937 random(20260423);
    // The file handlers' target writes every input to a file first: fewer of them.
    const int spread = GetParam().name == "xmp_file" ? 10 : 1;
    for (const QByteArray& file : files) {
        ASSERT_TRUE(run(entry, file));
        // Cut short at a spread of lengths, densely near the start.
        for (qsizetype length = 0; length < file.size();
             length += length < 1024 ? 7 * spread : (file.size() / 97 + 1) * spread)
            ASSERT_TRUE(run(entry, file.first(length))) << "truncated to " << length;
        const int variants = (file.size() > 100'000 ? 40 : 300) / spread;
        for (int i = 0; i < variants; ++i) {
            const QByteArray variant = mutated(file, random);
            ASSERT_TRUE(run(entry, variant))
                << "variant " << i << " of a file of " << file.size() << " bytes";
        }
    }
}

TEST_P(FuzzReplay, hostileInputsKeepThePromises)
{
    const QByteArray inputs[] = {
        QByteArray(),
        QByteArray(100000, '\0'),
        QByteArray(100000, '\xFF'),
        QByteArray("ASEF\0\1\0\0\xFF\xFF\xFF\xFF", 12) + QByteArray(6000, '\xC0'),
        QByteArray("\x06\x06\xED\xF5\xD8\x1D\x46\xE5\xBD\x31\xEF\xE7\xFE\x74\xB7\x1D", 16)
            + QByteArray(9000, '\x01'),
        QByteArray(5000, '(') + "%!PS-Adobe-3.0\r%%DocumentFonts: (((" + QByteArray(5000, '\\'),
        "%!PS\n%%BeginBinary: 99999999999999999999\n%%BeginData: -5 Hex Lines\n%%BeginPreview: 1 1 "
        "1 999999999\n",
        QByteArray("<?xpacket begin=").repeated(3000) + QByteArray("<x:xmpmeta>").repeated(3000),
    };
    for (const QByteArray& input : inputs)
        EXPECT_TRUE(run(GetParam().run, input)) << "input of " << input.size() << " bytes";
}

INSTANTIATE_TEST_SUITE_P(EntryPoints, FuzzReplay, testing::ValuesIn(FuzzEntryPoints::targets()),
    [](const testing::TestParamInfo<FuzzEntryPoints::Target>& info) { return info.param.name; });
