// SPDX-License-Identifier: GPL-3.0-or-later
// Replays the sample files, many truncated and mutated variants of them and inputs made to exhaust
// the readers through the fuzz entry points, so that the normal test run exercises them as the
// fuzzers do.
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

// One to four edits, made near the start (where headers and signatures are) as often as
// anywhere else.
QByteArray mutated(QByteArray bytes, std::mt19937& random)
{
    const auto position = [&] {
        const qsizetype range
            = random() % 2 ? bytes.size() : std::min<qsizetype>(bytes.size(), 512);
        return qsizetype(random() % range);
    };
    const int edits = 1 + int(random() % 4);
    for (int i = 0; i < edits && !bytes.isEmpty(); ++i) {
        const qsizetype at = position();
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
            bytes.insert(at, bytes.mid(position(), qsizetype(1 + random() % 32)));
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

TEST_P(FuzzReplay, samplesTheirVariantsAndHostileInputsKeepThePromises)
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

    const QByteArray hostile[] = {
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
    for (const QByteArray& input : hostile)
        EXPECT_TRUE(run(entry, input)) << "input of " << input.size() << " bytes";
}

INSTANTIATE_TEST_SUITE_P(EntryPoints, FuzzReplay, testing::ValuesIn(FuzzEntryPoints::targets()),
    [](const testing::TestParamInfo<FuzzEntryPoints::Target>& info) { return info.param.name; });
