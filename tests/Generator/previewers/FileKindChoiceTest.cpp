// SPDX-License-Identifier: GPL-3.0-or-later
// Which kind a file is previewed as, from its bytes and the type identifier the caller gives. Bytes
// that are not of the type's kind are FailingRun's (status 3), through the same choice.
#include "PreviewerTable.h"
#include "TestEnvironment.h"

#include <gtest/gtest.h>

using Formats::FileKind;

TEST(KindChoice, FollowsTheBytesAndTheType)
{
    const struct {
        const char* sample; // under tests/data
        const char* nameInHome; // copied under this name first, when given
        const char* uti;
        FileKind kind;
    } cases[] = {
        { "generator/illustrator-normal.ai", nullptr, "dyn.ah62d4rv4ge80c4py",
            FileKind::IllustratorPdf },
        { "formats/samples/illustrator88.eps", "old.ai", "com.adobe.illustrator.ai-image",
            FileKind::IllustratorPostScript },
        { "formats/samples/idml-4-pages-layers.idml", nullptr, "com.adobe.indesign-interchange",
            FileKind::Idml },
        { "formats/ase/LICENSE-swatch.txt", "notes.fh11", "com.macromedia.freehand.fh11-image",
            FileKind::FreeHand },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.sample) + " as " + c.uti);
        QString file = TestEnvironment::dataPath(QString::fromUtf8(c.sample));
        if (c.nameInHome) {
            const QString copy = TestEnvironment::home() + u'/' + QString::fromUtf8(c.nameInHome);
            TestEnvironment::writeFile(copy, TestEnvironment::readFile(file));
            file = copy;
        }
        const auto chosen = Preview::chooseFileKind(file, QString::fromUtf8(c.uti));
        ASSERT_TRUE(chosen.ok()) << chosen.reason().toStdString();
        EXPECT_EQ(*chosen, c.kind);
    }
}
