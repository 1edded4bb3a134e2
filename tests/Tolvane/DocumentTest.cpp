// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSException.h"
#include "PreviewView.h"
#include "TLDocument.h"
#include "TLDocumentController.h"
#include "TestEnvironment.h"

#include <QApplication>
#include <QMainWindow>
#include <gtest/gtest.h>

namespace {

QUrl makeFile(const QString& name, const QByteArray& contents = "%!PS-Adobe-3.0 EPSF-3.0\n")
{
    const QString path = TestEnvironment::home() + "/" + name;
    TestEnvironment::writeFile(path, contents);
    return QUrl::fromLocalFile(path);
}

// Any contents open (the preview makes sense of them) in a window the preview fills; nothing
// saves.
TEST(Document, OpensAnyContentsInAWindowThePreviewFillsAndRefusesToSave)
{
    TLDocument document;
    ASSERT_TRUE(document.initWithContentsOfURL(
        makeFile("b.ai", ""), "com.adobe.illustrator.ai-image", nullptr));
    EXPECT_THROW(document.dataOfType("com.adobe.illustrator.ai-image", nullptr), NSException);
    document.showWindows();
    QMainWindow* window = document.window();
    EXPECT_EQ(window->windowTitle(), "b.ai");
    EXPECT_EQ(document.qlView()->previewItem()->previewItemURL(), document.fileURL());
    window->resize(1000, 300);
    QApplication::processEvents();
    EXPECT_EQ(document.qlView()->geometry(), QRect(0, 0, 1000, 300));
}

TEST(DocumentController, OneWindowPerFileAndNoneForAFolder)
{
    TLDocumentController controller;
    TLDocument* first = controller.openDocumentWithContentsOfURL(makeFile("c.eps"), true, nullptr);
    ASSERT_NE(first, nullptr);
    // The same file by another path is the same document.
    const QUrl samePath = QUrl::fromLocalFile(TestEnvironment::home() + "/./c.eps");
    EXPECT_EQ(controller.openDocumentWithContentsOfURL(samePath, true, nullptr), first);
    TLDocument* second = controller.openDocumentWithContentsOfURL(makeFile("d.ai"), true, nullptr);
    EXPECT_NE(second, first);
    EXPECT_EQ(controller.recentDocumentPaths(),
        (QStringList { TestEnvironment::home() + "/d.ai", TestEnvironment::home() + "/c.eps" }));
    // A folder does not open.
    EXPECT_EQ(controller.openDocumentWithContentsOfURL(
                  QUrl::fromLocalFile(TestEnvironment::home()), true, nullptr),
        nullptr);
    first->window()->close();
    QApplication::processEvents();
    EXPECT_EQ(controller.documents(), QList<TLDocument*> { second });
}

}
